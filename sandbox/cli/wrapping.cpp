#include "sandbox/cli/wrapping.h"

#include <algorithm>

namespace sandbox {
namespace {

bool beginsCharacter(char byte) {
    return (static_cast<unsigned char>(byte) & 0xc0U) != 0x80U;
}

/// The bytes that the first `count` characters have.
std::size_t bytesOf(const std::string& text, std::size_t count) {
    std::size_t at = 0;
    for (std::size_t seen = 0; at < text.size(); ++at) {
        if (beginsCharacter(text[at]) && seen++ == count) {
            break;
        }
    }
    return at;
}

/// Where the line that begins the text ends, in bytes.
std::size_t lineEnd(const std::string& text, std::size_t width) {
    const std::size_t limit = bytesOf(text, width);
    if (limit == text.size()) {
        return limit;
    }
    const std::size_t first = text.find_first_not_of(' '); // blanks in front part nothing
    const std::size_t blank = text.rfind(' ', limit);
    if (blank != std::string::npos && first < blank) {
        return blank;
    }
    return std::min(text.find(' ', limit), text.size());
}

} // namespace

std::size_t textWidth(const std::string& text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), beginsCharacter));
}

std::vector<std::string> wrapped(const std::string& text, std::size_t width) {
    std::vector<std::string> lines;
    std::string rest = text;
    while (width != 0 && textWidth(rest) > width) {
        const std::size_t end = lineEnd(rest, width);
        lines.push_back(rest.substr(0, end));
        rest.erase(0, std::min(rest.find_first_not_of(' ', end), rest.size()));
    }
    if (!rest.empty() || lines.empty()) {
        lines.push_back(rest);
    }
    return lines;
}

std::string shortened(const std::string& text, std::size_t width, const std::string& gap) {
    const std::size_t length = textWidth(text);
    if (length <= width) {
        return text;
    }
    const std::size_t kept = width - std::min(width, textWidth(gap));
    const std::size_t behind = kept / 2;
    return text.substr(0, bytesOf(text, kept - behind)) + gap +
           text.substr(bytesOf(text, length - behind));
}

} // namespace sandbox
