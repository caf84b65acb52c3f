#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

/// What update materials are made of. Plain functions without state; any thread.
namespace materials {

/// A file's content.
using Bytes = std::vector<std::uint8_t>;

/// `size` bytes that follow from `seed` alone, the same on every system.
Bytes randomBytes(std::size_t size, std::uint64_t seed);

/// The MD5 of `bytes`: 32 hexadecimal digits in lower case, as servers and lists give it.
std::string md5Hex(const Bytes& bytes);

} // namespace materials
