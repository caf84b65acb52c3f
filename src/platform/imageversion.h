#pragma once

#include "platform/fileversion.h"

namespace platform {

/// What readFileVersion promises, without the system's help: no number in the file is
/// trusted. Any thread; blocks while the file is read.
std::optional<FileVersion> readImageVersion(const std::string& path);

} // namespace platform
