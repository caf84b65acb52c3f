#pragma once

#include <filesystem>
#include <set>
#include <string>

namespace sandbox::check {

/// The parts that a new scenario may have beside its plain material.
const std::set<std::string>& newParts();
/// With commas between.
std::string namesOfNewParts();

/// Writes a scenario that teaches its format by comments and runs as it stands. Throws
/// std::runtime_error when the file is there already, or cannot be written, or a part is not
/// known.
void writeNewScenario(const std::filesystem::path& file, const std::set<std::string>& parts);

} // namespace sandbox::check
