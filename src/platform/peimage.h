#pragma once

#include <cstdint>
#include <cstdio>
#include <optional>
#include <string>
#include <vector>

namespace platform::image {

using Bytes = std::vector<std::uint8_t>;

/// Numbers in a byte block, little-endian; nothing past its end.
std::optional<std::uint16_t> wordAt(const Bytes& block, std::size_t at);
std::optional<std::uint32_t> longAt(const Bytes& block, std::size_t at);

/// The version resources of a PE image (PE32 and PE32+), as they lie in the file: resource
/// type 16, name 1, one for each language. Reads only what it needs, trusts no offset, and
/// ends after three levels. Empty when the file has none, one of them is malformed or
/// they are over a megabyte together.
/// Source: "PE Format", sections "Optional Header" and "The .rsrc Section".
std::vector<Bytes> readVersionResources(std::FILE* image);

} // namespace platform::image
