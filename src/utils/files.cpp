#include <array>
#include <cstdio>
#include <memory>

#include "platform/digest.h"
#include "platform/files.h"
#include "utils/utils.h"

namespace utils {

std::string getFileMd5(const char* path) {
    constexpr std::size_t blockSize = 1024;
    constexpr const char* digits = "0123456789ABCDEF";
    if (!path) {
        return {};
    }
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(platform::openFile(path, "rb"),
                                                               std::fclose);
    if (!file) {
        return {};
    }
    platform::Md5 md5;
    std::array<char, blockSize> block;
    while (const std::size_t size = std::fread(block.data(), 1, block.size(), file.get())) {
        md5.update(block.data(), size);
    }
    std::string text;
    for (const std::uint8_t byte : md5.finish()) {
        text += digits[byte >> 4];
        text += digits[byte & 0xF];
    }
    return text;
}

std::int64_t getFileSize(const char* path) {
    // The list of files has always held the signed 32-bit size, also for larger files.
    return static_cast<std::int32_t>(platform::fileSize(path).value_or(0));
}

} // namespace utils
