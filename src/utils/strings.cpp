#include <algorithm>
#include <cctype>
#include <limits>

#include "utils/utils.h"

namespace utils {

void splitString(const std::string& text, const std::string& delimiter,
                 std::vector<std::string>& parts) {
    parts.clear();
    std::size_t start = 0;
    // The first search matches any one character of the delimiter, the others all of it.
    std::size_t pos = text.find_first_of(delimiter);
    while (pos != std::string::npos) {
        parts.push_back(text.substr(start, pos - start));
        // A first match of one character near the end may put the start past it.
        start = std::min(pos + delimiter.size(), text.size());
        pos = text.find(delimiter, start);
    }
    parts.push_back(text.substr(start));
}

int toInt(const std::string& text) {
    const char* p = text.c_str();
    while (std::isspace(static_cast<unsigned char>(*p))) {
        ++p;
    }
    const bool negative = *p == '-';
    if (*p == '-' || *p == '+') {
        ++p;
    }
    constexpr long long bound = std::numeric_limits<int>::max();
    long long number = 0;
    for (; std::isdigit(static_cast<unsigned char>(*p)); ++p) {
        number = std::min(number * 10 + (*p - '0'), bound + 1);
    }
    return static_cast<int>(negative ? -number : std::min(number, bound));
}

std::string toLower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return text;
}

} // namespace utils
