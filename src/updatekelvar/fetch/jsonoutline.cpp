#include "updatekelvar/fetch/jsonoutline.h"

#include <algorithm>

namespace jsontext {

namespace {

constexpr int maxDepth = 999;  // the library counts the value inside too and throws beyond 1000
constexpr int memberDepth = 2; // of what lies directly in the root

/// Whether the quote at `at` is part of the text that it stands in, which begins with a quote.
bool isEscaped(std::string_view json, std::size_t at) {
    std::size_t backslashes = 0;
    while (json[at - backslashes - 1] == '\\') {
        ++backslashes;
    }
    return backslashes % 2 != 0;
}

/// The quote that ends the text which begins with the one at `start`.
std::size_t endOfText(std::string_view json, std::size_t start) {
    std::size_t at = json.find('"', start + 1);
    while (at != std::string_view::npos && isEscaped(json, at)) {
        at = json.find('"', at + 1);
    }
    return std::min(at, json.size());
}

} // namespace

bool isBlank(std::string_view text) {
    return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

bool Outline::take(std::string_view json) {
    source = json;
    for (std::size_t i = 0; i < json.size() && !isRootOver; ++i) {
        switch (json[i]) {
        case '"':
            i = endOfText(json, i);
            break;
        case '[':
        case '{':
            _open(json[i], i);
            if (depth > maxDepth) {
                return false;
            }
            break;
        case ',':
            _comma(i);
            break;
        case ']':
        case '}':
            _close(i);
            break;
        case '/': // of a comment, which the library takes in some places and refuses in others
            return false;
        default:
            break;
        }
    }
    if (!isInArray) {
        text += source.substr(copied);
    }
    return true;
}

void Outline::_open(char bracket, std::size_t at) {
    ++depth;
    if (depth == 1) {
        isRootObject = bracket == '{';
    }
    if (depth == memberDepth && isRootObject && bracket == '[') {
        isInArray = true;
        elementStart = at + 1;
        text += source.substr(copied, elementStart - copied);
        text += std::to_string(arrays.size());
        arrays.emplace_back();
    }
}

void Outline::_comma(std::size_t at) {
    if (isInArray && depth == memberDepth) {
        _endElement(at);
    }
}

void Outline::_close(std::size_t at) {
    if (isInArray && depth == memberDepth) {
        const bool isEmpty =
            arrays.back().empty() && isBlank(source.substr(elementStart, at - elementStart));
        if (!isEmpty) {
            _endElement(at);
        }
        isInArray = false;
        copied = at;
    }
    --depth;
    isRootOver = depth <= 0;
}

void Outline::_endElement(std::size_t at) {
    arrays.back().push_back(source.substr(elementStart, at - elementStart));
    elementStart = at + 1;
}

} // namespace jsontext
