#pragma once

#include <filesystem>
#include <string>

#include "sandbox/cli/clientsystem.h"
#include "sandbox/cli/scenario.h"

/// Makes the folder of a run. All throw std::runtime_error or a filesystem error.
namespace sandbox {

/// Empties the folder. Refuses one that holds anything but an earlier run.
void clearRunFolder(const Folders& folders);

/// Lays the client out: the programs and modules of `binaries`, which are the system's, the
/// scenario's files, stores and filelist.xml, and the configuration with the platform's
/// address.
void layOutClient(const Scenario& scenario, const ClientSystem& system,
                  const std::filesystem::path& binaries, const std::string& address);

/// The native file of a client path. Throws std::runtime_error when the path leaves the
/// client's folder.
std::filesystem::path clientFile(const Folders& folders, const std::string& clientPath);

/// Where started programs leave their traces.
std::filesystem::path tracesFolder(const Folders& folders);

} // namespace sandbox
