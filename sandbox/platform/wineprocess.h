#pragma once

#include <filesystem>
#include <string>

namespace sandbox {

/// Whether the process of that number runs the Windows program `program` (a Windows path)
/// under Wine, on the system in the folder `prefix`. Any thread. On posix only.
bool isWineProcess(long long id, const std::string& program, const std::filesystem::path& prefix);

} // namespace sandbox
