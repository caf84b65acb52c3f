#include "sandbox/common/filefacts.h"

#include <algorithm>
#include <cctype>
#include <fstream>
#include <vector>

#include "platform/digest.h"
#include "platform/fileversion.h"
#include "sandbox/common/clientpath.h"

namespace sandbox {
namespace {

constexpr std::size_t blockSize = 65536;
constexpr std::size_t md5Digits = 32;

std::string hexOf(const std::array<std::uint8_t, 16>& digest) {
    static constexpr const char* digits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += {digits[byte >> 4], digits[byte & 15]};
    }
    return text;
}

std::string versionText(const std::filesystem::path& file) {
    const auto version = platform::readFileVersion(toClientPath(file));
    std::string text;
    for (std::size_t i = 0; version && i < version->size(); ++i) {
        text += (i == 0 ? "" : ".") + std::to_string(version->at(i));
    }
    return text;
}

} // namespace

std::optional<FileFacts> factsOf(const std::filesystem::path& file, const std::string& path) {
    std::error_code error;
    if (!std::filesystem::is_regular_file(file, error)) {
        return std::nullopt;
    }
    std::ifstream stream(file, std::ios::binary);
    platform::Md5 digest;
    FileFacts facts{path, 0, {}, {}};
    std::vector<char> block(blockSize);
    while (stream.read(block.data(), static_cast<std::streamsize>(block.size())),
           stream.gcount() > 0) {
        digest.update(block.data(), static_cast<std::size_t>(stream.gcount()));
        facts.size += static_cast<std::uint64_t>(stream.gcount());
    }
    if (!stream.is_open() || stream.bad()) {
        return std::nullopt;
    }
    facts.md5 = hexOf(digest.finish());
    facts.version = versionText(file);
    return facts;
}

bool isMd5(const std::string& text) {
    return text.size() == md5Digits && std::all_of(text.begin(), text.end(), [](unsigned char c) {
               return std::isxdigit(c) != 0;
           });
}

std::string lowered(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](unsigned char c) {
        return static_cast<char>(c < 0x80 ? std::tolower(c) : c);
    });
    return text;
}

} // namespace sandbox
