#include "sandbox/common/printable.h"

#include <cstdint>

namespace sandbox {
namespace {

constexpr std::uint32_t firstSurrogate = 0xd800;
constexpr std::uint32_t lastSurrogate = 0xdfff;
constexpr std::uint32_t lastCharacter = 0x10ffff;
constexpr std::uint32_t firstPrintable = 0x20;
constexpr std::uint32_t deleteCharacter = 0x7f;
constexpr std::uint32_t lastControl = 0x9f; ///< of those that begin with delete

/// Bytes of the sequence that the byte begins; 0 for one that begins none.
std::size_t sequenceLength(unsigned char first) {
    if (first < 0x80) {
        return 1;
    }
    if (first >= 0xc2 && first < 0xe0) {
        return 2;
    }
    if (first >= 0xe0 && first < 0xf0) {
        return 3;
    }
    return first >= 0xf0 && first < 0xf5 ? 4 : 0;
}

/// Whether the bytes are one character in its shortest form, and that is no control.
bool isPrintable(std::string_view sequence) {
    static constexpr std::uint32_t leastOf[]{0, 0, 0x80, 0x800, 0x10000};
    const std::size_t length = sequence.size();
    auto character = static_cast<std::uint32_t>(static_cast<unsigned char>(sequence[0]));
    character &= length == 1 ? 0x7fU : 0xffU >> (length + 1);
    for (const char byte : sequence.substr(1)) {
        if ((static_cast<unsigned char>(byte) & 0xc0U) != 0x80U) {
            return false;
        }
        character = character << 6U | (static_cast<unsigned char>(byte) & 0x3fU);
    }
    return character >= leastOf[length] && character <= lastCharacter &&
           (character < firstSurrogate || character > lastSurrogate) &&
           character >= firstPrintable && (character < deleteCharacter || character > lastControl);
}

} // namespace

std::string printable(std::string_view text) {
    static constexpr const char* digits = "0123456789abcdef";
    std::string plain;
    plain.reserve(text.size());
    while (!text.empty()) {
        const auto first = static_cast<unsigned char>(text.front());
        std::size_t length = sequenceLength(first);
        if (length > 0 && length <= text.size() && isPrintable(text.substr(0, length))) {
            plain += text.substr(0, length);
        } else {
            plain += std::string("\\x") + digits[first >> 4U] + digits[first & 0xfU];
            length = 1;
        }
        text.remove_prefix(length);
    }
    return plain;
}

} // namespace sandbox
