#pragma once

#include <string>

#include "platform/fileversion.h"
#include "sandbox/materials/content.h"

/// The version of an image that is there already. Plain functions; any thread.
namespace materials {

/// Reads "1.2.3.4". Throws std::runtime_error for anything but four numbers.
platform::FileVersion parsedVersion(const std::string& text);

/// The image with that version, of four parts, in its version resource. Throws
/// std::runtime_error when it has none.
Bytes withVersion(Bytes image, const std::string& version);

} // namespace materials
