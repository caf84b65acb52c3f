#pragma once

#include "platform/peimage.h"

#include <string_view>

namespace platform::image {

/// A block of a version resource: a key, a value and blocks below it. Offsets count from
/// the start of the resource and lie within it. Source: "VS_VERSIONINFO structure".
struct VersionBlock {
    std::size_t value = 0;
    std::size_t valueSize = 0; ///< bytes of a binary value that are there
    std::size_t children = 0;
    std::size_t end = 0;
    std::string key; ///< characters beyond ASCII become "?"
};

/// The block at `at`, which may not reach past `limit`; nothing when it is malformed.
std::optional<VersionBlock> parseBlock(const Bytes& resource, std::size_t at, std::size_t limit);

/// The block of that key (without regard to case) right below `parent`.
std::optional<VersionBlock> findChild(const Bytes& resource, const VersionBlock& parent,
                                      std::string_view key);

} // namespace platform::image
