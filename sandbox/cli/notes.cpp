#include "sandbox/cli/notes.h"

#include <cctype>

namespace sandbox {
namespace {

// The judge's own reading of the records, and not that of the plug-in's header.
constexpr int packageType = 7;
constexpr int versionType = 14;
constexpr std::size_t textOffset = 4;
constexpr std::size_t textSize = 128;
constexpr std::size_t packageTextSize = 1024;

std::string bytesOfHex(const std::string& hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
        if (std::isxdigit(static_cast<unsigned char>(hex[i])) == 0 ||
            std::isxdigit(static_cast<unsigned char>(hex[i + 1])) == 0) {
            return "";
        }
        bytes.push_back(static_cast<char>(std::stoi(hex.substr(i, 2), nullptr, 16)));
    }
    return bytes;
}

} // namespace

bool isConfirmedSilently(const std::string& logText) {
    return logText.starts_with("update plugin, pkg, task check, not logined or ui upgrade.");
}

bool isKind(const nlohmann::json& event, const char* kind) {
    return event.value("kind", "") == kind;
}

std::string programText(const nlohmann::json& event) {
    const std::string parameters = event.value("parameters", "");
    return event.value("file", "") + (parameters.empty() ? "" : " " + parameters);
}

std::string notifiedVersion(const nlohmann::json& event) {
    const std::string record = bytesOfHex(event.value("hex", ""));
    if (event.value("type", 0) != versionType || record.size() != textOffset + textSize ||
        record.compare(0, textOffset, std::string(textOffset, '\0')) != 0) {
        return "";
    }
    const std::string text = record.substr(textOffset);
    return text.substr(0, text.find('\0'));
}

std::optional<PackageNote> packageNote(const nlohmann::json& event) {
    if (!isKind(event, "notification") || event.value("type", 0) != packageType) {
        return std::nullopt;
    }
    const std::string record = bytesOfHex(event.value("hex", ""));
    if (record.size() != textOffset + packageTextSize) {
        return std::nullopt;
    }
    PackageNote note;
    for (std::size_t at = textOffset; at > 0; --at) { // the least significant byte first
        note.code = note.code << 8 | static_cast<unsigned char>(record[at - 1]);
    }
    const std::string text = record.substr(textOffset);
    note.text = text.substr(0, text.find('\0'));
    return note;
}

} // namespace sandbox
