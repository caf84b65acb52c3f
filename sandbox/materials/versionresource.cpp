#include "sandbox/materials/versionresource.h"

#include "sandbox/materials/littleendian.h"

namespace materials {

namespace {

constexpr std::uint32_t fixedInfoSignature = 0xFEEF04BD;
constexpr std::uint32_t fixedInfoVersion = 0x00010000;
constexpr std::uint32_t fileFlagsMask = 0x3F;
constexpr std::uint32_t windowsNt = 0x00040004; ///< VOS_NT_WINDOWS32
constexpr std::uint32_t dllType = 2;            ///< VFT_DLL
constexpr std::uint32_t english = 0x0409;
constexpr std::uint32_t unicode = 0x04B0;

enum class ValueType : std::uint32_t { binary = 0, text = 1 };

void appendWide(Bytes& bytes, std::string_view text) {
    for (const char c : text) {
        appendWord(bytes, static_cast<std::uint8_t>(c));
    }
    appendWord(bytes, 0);
}

/// A block: its value's length in the unit of its type, then key, value and children.
Bytes block(std::string_view key, ValueType type, const Bytes& value, const Bytes& children) {
    Bytes bytes(2);
    appendWord(bytes, static_cast<std::uint32_t>(type == ValueType::text ? value.size() / 2
                                                                         : value.size()));
    appendWord(bytes, static_cast<std::uint32_t>(type));
    appendWide(bytes, key);
    if (!value.empty() || !children.empty()) {
        alignTo(bytes, 4);
    }
    append(bytes, value);
    if (!children.empty()) {
        alignTo(bytes, 4);
        append(bytes, children);
    }
    putWord(bytes, 0, static_cast<std::uint32_t>(bytes.size()));
    return bytes;
}

void appendChild(Bytes& children, const Bytes& child) {
    alignTo(children, 4);
    append(children, child);
}

Bytes fixedInfo(const platform::FileVersion& version) {
    const std::uint32_t high = std::uint32_t{version[0]} << 16 | version[1];
    const std::uint32_t low = std::uint32_t{version[2]} << 16 | version[3];
    Bytes info;
    for (const std::uint32_t field : {fixedInfoSignature, fixedInfoVersion, high, low, high, low,
                                      fileFlagsMask, std::uint32_t{0}, windowsNt, dllType,
                                      std::uint32_t{0}, std::uint32_t{0}, std::uint32_t{0}}) {
        appendLong(info, field);
    }
    return info;
}

Bytes stringInfo(const PeFile& file) {
    std::string version;
    for (const std::uint16_t word : file.version) {
        version += (version.empty() ? "" : ".") + std::to_string(word);
    }
    Bytes strings;
    for (const auto& [key, text] : {std::pair("FileDescription", file.description),
                                    {"FileVersion", version},
                                    {"InternalName", file.name},
                                    {"OriginalFilename", file.name},
                                    {"ProductVersion", version}}) {
        if (!text.empty()) {
            Bytes value;
            appendWide(value, text);
            appendChild(strings, block(key, ValueType::text, value, {}));
        }
    }
    return block("StringFileInfo", ValueType::text, {},
                 block("040904B0", ValueType::text, {}, strings));
}

Bytes translationInfo() {
    Bytes value;
    appendWord(value, english);
    appendWord(value, unicode);
    return block("VarFileInfo", ValueType::text, {},
                 block("Translation", ValueType::binary, value, {}));
}

} // namespace

Bytes buildVersionResource(const PeFile& file) {
    Bytes children;
    appendChild(children, stringInfo(file));
    if (file.hasTranslation) {
        appendChild(children, translationInfo());
    }
    return block("VS_VERSION_INFO", ValueType::binary, fixedInfo(file.version), children);
}

} // namespace materials
