#pragma once

#include "sandbox/materials/pefile.h"

namespace materials {

/// The version resource of a built image. Source: "VS_VERSIONINFO structure".
Bytes buildVersionResource(const PeFile& file);

} // namespace materials
