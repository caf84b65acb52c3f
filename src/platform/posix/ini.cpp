#include "platform/ini.h"

#include "platform/asciicase.h"
#include "platform/files.h"

#include <memory>
#include <optional>
#include <string_view>

namespace platform {

namespace {

constexpr std::string_view blanks = " \t\v\f";
constexpr std::size_t integerLimit = 256;

std::string_view trimmed(std::string_view text) {
    const std::size_t start = text.find_first_not_of(blanks);
    if (start == std::string_view::npos) {
        return {};
    }
    return text.substr(start, text.find_last_not_of(blanks) - start + 1);
}

std::string_view unquoted(std::string_view value) {
    const bool isQuoted = value.size() > 1 && (value.front() == '"' || value.front() == '\'') &&
                          value.front() == value.back();
    return isQuoted ? value.substr(1, value.size() - 2) : value;
}

std::string readAll(const std::string& path) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(openFile(path, "rb"), std::fclose);
    std::string text;
    char block[4096];
    while (const std::size_t count = file ? std::fread(block, 1, sizeof block, file.get()) : 0) {
        text.append(block, count);
    }
    return text;
}

/// The name between the brackets of a section's line; nothing for another line.
std::optional<std::string_view> sectionName(std::string_view line) {
    const std::size_t end = line.find(']');
    if (!line.starts_with('[') || end == std::string_view::npos) {
        return std::nullopt;
    }
    return trimmed(line.substr(1, end - 1));
}

/// The value of a "name=value" line of that name.
std::optional<std::string_view> valueOf(std::string_view line, std::string_view key) {
    const std::size_t sign = line.find('=');
    if (sign == std::string_view::npos || line.starts_with(';') ||
        !equalIgnoringCase(trimmed(line.substr(0, sign)), trimmed(key))) {
        return std::nullopt;
    }
    return unquoted(trimmed(line.substr(sign + 1)));
}

/// The first line of that key in the first section of that name.
std::optional<std::string> findValue(const std::string& text, std::string_view section,
                                     std::string_view key) {
    bool inSection = false;
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::size_t end = rest.find_first_of("\r\n");
        const std::string_view line = trimmed(rest.substr(0, end));
        rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
        if (const auto name = sectionName(line)) {
            if (inSection) {
                return std::nullopt;
            }
            inSection = equalIgnoringCase(*name, trimmed(section));
        } else if (const auto value = inSection ? valueOf(line, key) : std::nullopt) {
            return std::string(*value);
        }
    }
    return std::nullopt;
}

std::optional<unsigned> digitOf(char c, unsigned base) {
    unsigned digit = base;
    if (c >= '0' && c <= '9') {
        digit = static_cast<unsigned>(c - '0');
    } else if (c >= 'a' && c <= 'f') {
        digit = static_cast<unsigned>(c - 'a') + 10;
    } else if (c >= 'A' && c <= 'F') {
        digit = static_cast<unsigned>(c - 'A') + 10;
    }
    return digit < base ? std::optional(digit) : std::nullopt;
}

/// Takes a base's prefix off `text`.
unsigned takeBase(std::string_view& text) {
    for (const auto& [prefix, base] : {std::pair("0x", 16U), {"0o", 8U}, {"0b", 2U}}) {
        if (text.starts_with(prefix)) {
            text.remove_prefix(2);
            return base;
        }
    }
    return 10;
}

/// The number that a text begins with, modulo 2^32.
int parseInteger(std::string_view text) {
    const bool isNegative = text.starts_with('-');
    if (isNegative || text.starts_with('+')) {
        text.remove_prefix(1);
    }
    const unsigned base = takeBase(text);
    unsigned value = 0;
    for (const char c : text) {
        const std::optional<unsigned> digit = digitOf(c, base);
        if (!digit) {
            break;
        }
        value = value * base + *digit;
    }
    return static_cast<int>(isNegative ? 0U - value : value);
}

} // namespace

std::string profileString(const std::string& file, const char* section, const char* key,
                          const std::string& defaultValue, std::size_t limit) {
    std::string value =
        findValue(readAll(file), section, key)
            .value_or(defaultValue.substr(0, defaultValue.find_last_not_of(' ') + 1));
    return value.substr(0, limit > 0 ? limit - 1 : 0);
}

int profileInt(const std::string& file, const char* section, const char* key, int defaultValue) {
    const std::string value = profileString(file, section, key, "", integerLimit);
    return value.empty() ? defaultValue : parseInteger(trimmed(value));
}

} // namespace platform
