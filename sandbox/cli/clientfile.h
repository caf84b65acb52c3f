#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "sandbox/common/folders.h"

/// Files of a run by what its client calls them; shared by xsandbox and the programs that
/// it puts into a client's folder.
namespace sandbox {

/// The native file of a client path. Throws std::runtime_error when the path leaves the
/// client's folder.
std::filesystem::path clientFile(const Folders& folders, const std::string& clientPath);

/// Where started programs leave their traces.
std::filesystem::path tracesFolder(const Folders& folders);

/// The run that a program lies in. Throws std::runtime_error outside of one.
Folders runOf(const std::filesystem::path& program);

/// Leaves a trace of the program's start, a JSON file. Throws std::runtime_error when it
/// cannot.
void leaveTrace(const Folders& folders, const std::filesystem::path& program,
                const std::vector<std::string>& arguments);

} // namespace sandbox
