#pragma once

#include <memory>
#include <string>

#include "sandbox/cli/clientsystem.h"
#include "sandbox/cli/verb.h"

/// The option --folder, which verbs about a run share.
namespace sandbox {

inline constexpr const char* usualFolder = "sandbox-run";

/// `folder` outlives the command, and has its default.
void addFolder(CLI::App* command, std::string& folder);

Folders foldersOf(const std::string& folder);

/// Of a run that is there. Throws std::runtime_error when none is.
Folders existingRun(const std::string& folder);
std::unique_ptr<ClientSystem> existingSystem(const std::string& folder);

} // namespace sandbox
