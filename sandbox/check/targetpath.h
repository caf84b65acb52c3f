#pragma once

#include <string>

namespace sandbox::check {

/// Why the client refuses a path as a target or as the name of a cabinet's member; empty when
/// it does not.
std::string refusalOf(const std::string& path);

/// Why a text cannot name a file in a folder, as a hash has to; empty when it can.
std::string nameRefusalOf(const std::string& name);

/// The key under which two targets are the same file.
std::string targetKey(const std::string& path);

bool isAscii(const std::string& text);

} // namespace sandbox::check
