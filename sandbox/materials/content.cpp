#include "sandbox/materials/content.h"

#include "platform/digest.h"

namespace materials {

namespace {

/// SplitMix64: short, and the same everywhere.
std::uint64_t nextRandom(std::uint64_t& state) {
    state += 0x9E3779B97F4A7C15U;
    std::uint64_t value = state;
    value = (value ^ value >> 30) * 0xBF58476D1CE4E5B9U;
    value = (value ^ value >> 27) * 0x94D049BB133111EBU;
    return value ^ value >> 31;
}

} // namespace

Bytes randomBytes(std::size_t size, std::uint64_t seed) {
    Bytes bytes(size);
    std::uint64_t word = 0;
    for (std::size_t at = 0; at < size; ++at, word >>= 8) {
        if (at % sizeof word == 0) {
            word = nextRandom(seed);
        }
        bytes[at] = static_cast<std::uint8_t>(word & 0xFF);
    }
    return bytes;
}

std::string md5Hex(const Bytes& bytes) {
    constexpr char digits[] = "0123456789abcdef";
    platform::Md5 md5;
    md5.update(bytes.data(), bytes.size());
    std::string hex;
    for (const std::uint8_t byte : md5.finish()) {
        hex += {digits[byte >> 4], digits[byte & 15]};
    }
    return hex;
}

} // namespace materials
