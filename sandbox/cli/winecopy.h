#pragma once

#include <filesystem>

namespace sandbox {

/// Makes a Wine system in the new folder `copy` that is like `original`. Beside its drive C:
/// it has `driveD` as drive D:, and sees nothing else of the disk. The original is never
/// written to, though the copy shares the content of its drive C:, and may be running. Throws
/// std::runtime_error when there is no original.
void copyWine(const std::filesystem::path& original, const std::filesystem::path& copy,
              const std::filesystem::path& driveD);

} // namespace sandbox
