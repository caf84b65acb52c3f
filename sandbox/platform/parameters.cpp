#include "sandbox/platform/parameters.h"

namespace sandbox {

namespace {

bool isBlank(char c) {
    return c == ' ' || c == '\t';
}

/// Takes the piece that begins at `at` and leaves `at` behind it.
std::string takePiece(const std::string& text, std::size_t& at) {
    std::string piece;
    bool quoted = false;
    while (at < text.size() && (quoted || !isBlank(text[at]))) {
        std::size_t slashes = 0;
        while (at < text.size() && text[at] == '\\') {
            ++slashes;
            ++at;
        }
        const bool atQuote = at < text.size() && text[at] == '"';
        piece.append(atQuote ? slashes / 2 : slashes, '\\');
        if (atQuote) {
            ++at;
            if (slashes % 2 == 1) {
                piece += '"';
            } else if (quoted && at < text.size() && text[at] == '"') {
                piece += text[at++];
            } else {
                quoted = !quoted;
            }
        } else if (slashes == 0) {
            piece += text[at++];
        }
    }
    return piece;
}

} // namespace

std::vector<std::string> splitParameters(const std::string& text) {
    std::vector<std::string> pieces;
    std::size_t at = 0;
    while (true) {
        while (at < text.size() && isBlank(text[at])) {
            ++at;
        }
        if (at == text.size()) {
            return pieces;
        }
        pieces.push_back(takePiece(text, at));
    }
}

} // namespace sandbox
