#pragma once

#include "platform/fileversion.h"
#include "sandbox/materials/content.h"

namespace materials {

/// What a built image tells about itself.
struct PeFile {
    platform::FileVersion version{1, 0, 0, 0};
    std::string name{};         ///< OriginalFilename and InternalName; ASCII
    std::string description{};  ///< FileDescription; ASCII
    bool hasTranslation = true; ///< without it the version resource is incomplete
    std::size_t size = 0;       ///< padded up to this size with bytes that follow from `seed`
    std::uint64_t seed = 0;
};

/// An image (PE32+ DLL for x86-64 without code) whose version resource holds the given
/// version. Never shorter than its headers and resource. Source: "PE Format" and
/// "VS_VERSIONINFO structure".
Bytes buildPeFile(const PeFile& file);

} // namespace materials
