#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "sandbox/cli/clientfile.h"
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

/// The client's modules that a layout brings, by their client paths.
std::vector<std::string> moduleFiles();

/// Throws std::runtime_error when a host runs in the folder: it would go on writing into what is
/// laid out anew, and lose its machine in a restart. One that is just ending is waited for.
void refuseHosted(const Folders& folders);

} // namespace sandbox
