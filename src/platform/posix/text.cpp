#include "platform/text.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

namespace platform {

namespace {

constexpr char32_t replacement = 0xFFFD;
constexpr char32_t lastCodePoint = 0x10FFFF;

bool isHighSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool isLowSurrogate(char32_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}

/// How a sequence goes on after its first byte: RFC 3629, section 4.
struct Sequence {
    int following;
    std::uint8_t secondLow;
    std::uint8_t secondHigh;
};

Sequence sequenceOf(std::uint8_t first) {
    if (first >= 0xC2 && first <= 0xDF) {
        return {1, 0x80, 0xBF};
    }
    if (first >= 0xE0 && first <= 0xEF) {
        return {2, static_cast<std::uint8_t>(first == 0xE0 ? 0xA0 : 0x80),
                static_cast<std::uint8_t>(first == 0xED ? 0x9F : 0xBF)};
    }
    if (first >= 0xF0 && first <= 0xF4) {
        return {3, static_cast<std::uint8_t>(first == 0xF0 ? 0x90 : 0x80),
                static_cast<std::uint8_t>(first == 0xF4 ? 0x8F : 0xBF)};
    }
    return {0, 0, 0};
}

/// Takes one character; a broken sequence counts as one up to the byte that breaks it.
char32_t takeCodePoint(const std::string& utf8, std::size_t& at) {
    const auto byteAt = [&](std::size_t index) {
        return static_cast<std::uint8_t>(utf8[index]);
    };
    const std::uint8_t first = byteAt(at++);
    if (first < 0x80) {
        return first;
    }
    const Sequence sequence = sequenceOf(first);
    char32_t value = first & (0x3FU >> sequence.following);
    std::uint8_t low = sequence.secondLow;
    std::uint8_t high = sequence.secondHigh;
    for (int left = sequence.following; left > 0; --left) {
        if (at >= utf8.size() || byteAt(at) < low || byteAt(at) > high) {
            return replacement;
        }
        value = value << 6 | (byteAt(at++) & 0x3FU);
        low = 0x80;
        high = 0xBF;
    }
    return sequence.following ? value : replacement;
}

void appendWide(std::wstring& wide, char32_t value) {
    if (sizeof(wchar_t) == 2 && value > 0xFFFF) {
        wide += static_cast<wchar_t>(0xD7C0 + (value >> 10));
        wide += static_cast<wchar_t>(0xDC00 + (value & 0x3FF));
    } else {
        wide += static_cast<wchar_t>(value);
    }
}

void appendUtf8(std::string& utf8, char32_t value) {
    const auto append = [&](char32_t byte) {
        utf8 += static_cast<char>(byte);
    };
    const auto following = [&](int shift) {
        append(0x80 | ((value >> shift) & 0x3F));
    };
    if (value < 0x80) {
        append(value);
    } else if (value < 0x800) {
        append(0xC0 | value >> 6);
        following(0);
    } else if (value < 0x10000) {
        append(0xE0 | value >> 12);
        following(6);
        following(0);
    } else {
        append(0xF0 | value >> 18);
        following(12);
        following(6);
        following(0);
    }
}

} // namespace

std::wstring toWide(const std::string& utf8) {
    std::wstring wide;
    for (std::size_t at = 0; at < utf8.size();) {
        appendWide(wide, takeCodePoint(utf8, at));
    }
    return wide;
}

std::string toUtf8(const std::wstring& wide) {
    std::string utf8;
    for (std::size_t at = 0; at < wide.size(); ++at) {
        auto value = static_cast<char32_t>(wide[at]);
        const char32_t next = at + 1 < wide.size() ? static_cast<char32_t>(wide[at + 1]) : 0;
        if (isHighSurrogate(value) && isLowSurrogate(next)) {
            value = 0x10000 + ((value - 0xD800) << 10) + (next - 0xDC00);
            ++at;
        } else if (isHighSurrogate(value) || isLowSurrogate(value) || value > lastCodePoint) {
            value = replacement;
        }
        appendUtf8(utf8, value);
    }
    return utf8;
}

} // namespace platform
