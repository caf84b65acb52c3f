#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace platform {

/// The four words of a file version, most significant first.
using FileVersion = std::array<std::uint16_t, 4>;

/// The fixed file version of a module's version resource (VS_VERSIONINFO of a PE file).
/// Nothing when the file is not there, is no PE file, has no version resource, or one of
/// its languages is damaged or has no "\VarFileInfo\Translation". Reads untrusted files.
/// Any thread.
std::optional<FileVersion> readFileVersion(const std::string& path);

} // namespace platform
