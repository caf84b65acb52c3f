#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace sandbox::doctor {

/// The value PendingFileRenameOperations in the registry file of a Windows under Wine, in UTF-8
/// with its zeros; empty when the system keeps none. Nothing when the file cannot be read or
/// the value is damaged. Reads the text of the file and starts no program. Source: the header
/// line "WINE REGISTRY Version 2" and the files that Wine writes.
std::optional<std::string> pendingRenamesIn(const std::filesystem::path& registry);

} // namespace sandbox::doctor
