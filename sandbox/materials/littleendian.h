#pragma once

#include "sandbox/materials/content.h"

#include <string_view>

/// Fields of file formats, appended or overwritten with the least significant byte first.
namespace materials {

inline void putWord(Bytes& bytes, std::size_t at, std::uint32_t value) {
    bytes.at(at) = static_cast<std::uint8_t>(value & 0xFF);
    bytes.at(at + 1) = static_cast<std::uint8_t>(value >> 8 & 0xFF);
}

inline void appendWord(Bytes& bytes, std::uint32_t value) {
    bytes.resize(bytes.size() + 2);
    putWord(bytes, bytes.size() - 2, value);
}

inline void appendLong(Bytes& bytes, std::uint32_t value) {
    appendWord(bytes, value & 0xFFFF);
    appendWord(bytes, value >> 16);
}

inline void appendText(Bytes& bytes, std::string_view text) {
    bytes.insert(bytes.end(), text.begin(), text.end());
}

inline void append(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

/// Zeros up to the next multiple of `step`.
inline void alignTo(Bytes& bytes, std::size_t step) {
    bytes.resize((bytes.size() + step - 1) / step * step);
}

} // namespace materials
