#include "sandbox/doctor/registry.h"

#include <algorithm>
#include <charconv>
#include <string_view>

#include "platform/text.h"
#include "sandbox/platform/filewrites.h"

namespace sandbox::doctor {
namespace {

constexpr std::string_view sessionManager =
    "\n[System\\\\CurrentControlSet\\\\Control\\\\Session Manager]";
constexpr std::string_view valueName = "\n\"PendingFileRenameOperations\"=";
constexpr std::string_view asText = "str(7):\"";
constexpr std::string_view asBytes = "hex(7):";

/// UTF-16 units to UTF-8, a zero to a zero.
std::string textOf(const std::u16string& units) {
    std::wstring wide;
    for (std::size_t i = 0; i < units.size(); ++i) {
        const auto unit = static_cast<wchar_t>(units[i]);
        const bool isHigh = units[i] >= 0xD800 && units[i] < 0xDC00 && i + 1 < units.size();
        if (isHigh && units[i + 1] >= 0xDC00 && units[i + 1] < 0xE000) {
            wide += static_cast<wchar_t>(0x10000 + (unit - 0xD800) * 0x400 + (units[++i] - 0xDC00));
        } else {
            wide += unit;
        }
    }
    return platform::toUtf8(wide);
}

/// A number of at most `most` digits at the text's front, which it cuts off.
std::optional<unsigned> takeNumber(std::string_view& text, int base, std::size_t most) {
    unsigned number = 0;
    const std::string_view digits = text.substr(0, most);
    const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), number, base);
    if (end.ec != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end.ptr - digits.data()));
    return number;
}

/// What stands behind a backslash: a number in octal, "x" and one in hexadecimal, or a letter.
std::optional<char16_t> takeEscaped(std::string_view& text) {
    static constexpr std::string_view letters = "abtnvfre";
    static constexpr std::string_view controls = "\a\b\t\n\v\f\r\x1b";
    std::optional<unsigned> number;
    if (text.empty()) {
        return std::nullopt;
    }
    if (text.front() >= '0' && text.front() <= '7') {
        number = takeNumber(text, 8, 3);
    } else if (text.front() == 'x') {
        text.remove_prefix(1);
        number = takeNumber(text, 16, 4);
    } else {
        const std::size_t letter = letters.find(text.front());
        number = letter == letters.npos ? static_cast<unsigned char>(text.front())
                                        : static_cast<unsigned char>(controls[letter]);
        text.remove_prefix(1);
    }
    return number ? std::optional(static_cast<char16_t>(*number)) : std::nullopt;
}

/// Up to the closing quote. What is not ASCII is escaped in it.
std::optional<std::string> readQuoted(std::string_view text) {
    std::u16string units;
    while (!text.empty() && text.front() != '"') {
        const char c = text.front();
        text.remove_prefix(1);
        const auto unit = c == '\\'
                              ? takeEscaped(text)
                              : std::optional(static_cast<char16_t>(static_cast<unsigned char>(c)));
        if (!unit) {
            return std::nullopt;
        }
        units += *unit;
    }
    return text.empty() ? std::nullopt : std::optional(textOf(units));
}

/// Bytes in hexadecimal between commas; a backslash goes on in the next line.
std::optional<std::string> readBytes(std::string_view text) {
    std::u16string units;
    std::size_t count = 0;
    while (!text.empty() && text.front() != '\n') {
        if (text.front() == '\\' || text.front() == ',') {
            text.remove_prefix(1);
            text.remove_prefix(std::min(text.find_first_not_of(" \r\n"), text.size()));
            continue;
        }
        const auto byte = takeNumber(text, 16, 2);
        if (!byte) {
            return std::nullopt;
        }
        if (count++ % 2 == 0) {
            units += static_cast<char16_t>(*byte);
        } else {
            units.back() = static_cast<char16_t>(units.back() | *byte << 8);
        }
    }
    return textOf(units);
}

} // namespace

std::optional<std::string> pendingRenamesIn(const std::filesystem::path& registry) {
    const std::optional<std::string> content = readFile(registry);
    if (!content || content->rfind("WINE REGISTRY", 0) != 0) {
        return std::nullopt;
    }
    std::string_view text = *content;
    const std::size_t section = text.find(sessionManager);
    if (section == text.npos) {
        return "";
    }
    text.remove_prefix(section + sessionManager.size());
    text = text.substr(0, text.find("\n["));
    const std::size_t value = text.find(valueName);
    if (value == text.npos) {
        return "";
    }
    text.remove_prefix(value + valueName.size());
    if (text.rfind(asText, 0) == 0) {
        return readQuoted(text.substr(asText.size()));
    }
    return text.rfind(asBytes, 0) == 0 ? readBytes(text.substr(asBytes.size())) : std::nullopt;
}

} // namespace sandbox::doctor
