#include "platform/posix/journalline.h"

#include <charconv>

namespace platform::posix {

namespace {

constexpr char fieldSeparator = '\t';
constexpr char escapeMark = '%';

std::string escape(const std::string& path) {
    constexpr char digits[] = "0123456789abcdef";
    std::string escaped;
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7f || c == escapeMark) {
            escaped += {escapeMark, digits[byte >> 4], digits[byte & 15]};
        } else {
            escaped += c;
        }
    }
    return escaped;
}

std::optional<std::string> unescape(std::string_view escaped) {
    std::string path;
    for (std::size_t at = 0; at < escaped.size(); ++at) {
        if (escaped[at] != escapeMark) {
            path += escaped[at];
            continue;
        }
        unsigned char byte = 0;
        const char* digits = escaped.data() + at + 1;
        if (at + 2 >= escaped.size() ||
            std::from_chars(digits, digits + 2, byte, 16).ptr != digits + 2) {
            return std::nullopt;
        }
        path += static_cast<char>(byte);
        at += 2;
    }
    return path.empty() ? std::nullopt : std::optional(path);
}

/// Cuts the text up to the next separator off the front of `line`.
std::string_view takeField(std::string_view& line) {
    const std::size_t end = line.find(fieldSeparator);
    const std::string_view field = line.substr(0, end);
    line.remove_prefix(end == std::string_view::npos ? line.size() : end + 1);
    return field;
}

} // namespace

std::string formatLine(const DelayedMove& request) {
    const char* kind = !request.to ? "delete" : request.replace ? "replace" : "move";
    std::string line = std::string(kind) + fieldSeparator + escape(request.from);
    if (request.to) {
        line += fieldSeparator + escape(*request.to);
    }
    return line + '\n';
}

std::optional<DelayedMove> parseLine(std::string_view line) {
    const std::string_view kind = takeField(line);
    const std::optional<std::string> from = unescape(takeField(line));
    const std::optional<std::string> to = unescape(takeField(line));
    const bool isDelete = kind == "delete";
    const bool isKnown = isDelete || kind == "move" || kind == "replace";
    if (!isKnown || !from || isDelete == to.has_value() || !line.empty()) {
        return std::nullopt;
    }
    return DelayedMove{*from, to, kind == "replace"};
}

} // namespace platform::posix
