#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>

#include "platform/digest.h"
#include "platform/files.h"
#include "utils/utils.h"

namespace {

/// What is read of a file at a time: a whole number of pages, on their border, which is where
/// the system copies to and the digest reads from fastest.
struct ReadBuffer {
    alignas(4096) std::array<char, 65536> bytes;
};

} // namespace

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
    const std::unique_ptr<ReadBuffer> buffer(new ReadBuffer);
    // Read where the digest takes it from. Refused, it is read by way of the file's own buffer.
    static_cast<void>(std::setvbuf(file.get(), nullptr, _IONBF, 0));
    platform::Md5 md5;
    while (const std::size_t size =
               std::fread(buffer->bytes.data(), 1, buffer->bytes.size(), file.get())) {
        for (std::size_t at = 0; at < size; at += blockSize) {
            md5.update(buffer->bytes.data() + at, std::min(blockSize, size - at));
        }
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
