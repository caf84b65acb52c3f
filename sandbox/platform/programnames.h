#pragma once

#include <string>

namespace sandbox {

/// The file of a program of this build, "x" or "x.exe".
std::string programFile(const std::string& name);

/// Where the loadable image of a module lies when the file of its own name is only there
/// for its version resource; the name itself where one file is both.
std::string imageFile(const std::string& module);

} // namespace sandbox
