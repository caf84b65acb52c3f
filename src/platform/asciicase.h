#pragma once

#include <algorithm>
#include <string_view>

namespace platform {

/// Equal but for the case of ASCII letters.
inline bool equalIgnoringCase(std::string_view a, std::string_view b) {
    const auto lowerCase = [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return lowerCase(x) == lowerCase(y); });
}

} // namespace platform
