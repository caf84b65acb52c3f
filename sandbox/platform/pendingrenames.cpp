#include "sandbox/platform/pendingrenames.h"

#include <algorithm>
#include <string_view>

namespace sandbox {

namespace {

/// The texts of the value without the zero that ends the whole.
std::vector<std::string> textsOf(const std::string& value) {
    std::vector<std::string> texts;
    for (std::size_t begin = 0; begin < value.size();) {
        const std::size_t end = std::min(value.find('\0', begin), value.size());
        texts.push_back(value.substr(begin, end - begin));
        begin = end + 1;
    }
    if (texts.size() % 2 == 1 && texts.back().empty()) {
        texts.pop_back();
    }
    return texts;
}

bool begins(std::string_view text, std::string_view with) {
    return text.substr(0, with.size()) == with;
}

std::string pathOf(std::string_view text) {
    for (const std::string_view mark : {"!", "*1", "*2", "\\??\\"}) {
        text.remove_prefix(begins(text, mark) ? mark.size() : 0);
    }
    return std::string(text);
}

char folded(char c) {
    return c == '/' ? '\\' : c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

bool isBelow(const std::string& folder, const std::string& path) {
    return path.size() > folder.size() && path[folder.size()] == '\\' &&
           std::equal(folder.begin(), folder.end(), path.begin(),
                      [](char a, char b) { return folded(a) == folded(b); });
}

} // namespace

PendingList readPendingRenames(const std::string& value, const std::string& folder) {
    PendingList list;
    const std::vector<std::string> texts = textsOf(value);
    for (std::size_t i = 0; i + 1 < texts.size(); i += 2) {
        PendingMove move{pathOf(texts[i]), pathOf(texts[i + 1])};
        if (move.from.empty()) {
            list.faults.push_back("request " + std::to_string(i / 2 + 1) + " names no file");
        } else if (isBelow(folder, move.from)) {
            list.moves.push_back(std::move(move));
        }
    }
    if (texts.size() % 2 == 1) {
        list.faults.push_back("the last request has no target: " + texts.back());
    }
    return list;
}

} // namespace sandbox
