#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/common/filefacts.h"

namespace sandbox {

/// Whether the file begins as a cabinet does.
bool isCabinetFile(const std::filesystem::path& file);

/// The names of a cabinet's members, in its order, as far as its index can be read.
std::vector<std::string> membersOf(const std::filesystem::path& cabinet);

/// The member of that name, without regard to case, expanded into a temporary file that goes
/// before this returns. Nothing when it is not there or cannot be expanded.
std::optional<FileFacts> memberFacts(const std::filesystem::path& cabinet, const std::string& name);

} // namespace sandbox
