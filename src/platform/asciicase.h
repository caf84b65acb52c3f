#pragma once

#include <algorithm>
#include <string_view>

namespace platform {

/// The letter in lower case when it is one of ASCII.
inline char lowerAscii(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Equal but for the case of ASCII letters.
inline bool equalIgnoringCase(std::string_view a, std::string_view b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [](char x, char y) { return lowerAscii(x) == lowerAscii(y); });
}

} // namespace platform
