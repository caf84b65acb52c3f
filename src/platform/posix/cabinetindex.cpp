#include "platform/posix/cabinetindex.h"

#include <array>

namespace platform::posix {

namespace {

constexpr std::size_t headerSize = 36;
constexpr std::size_t firstFileField = 16;
constexpr std::size_t fileCountField = 28;
constexpr std::size_t memberSize = 16;
constexpr std::size_t folderIndexField = 8;

template <std::size_t size>
bool readBlock(std::FILE* file, std::array<std::uint8_t, size>& block) {
    return std::fread(block.data(), 1, size, file) == size;
}

template <std::size_t size>
std::uint16_t wordAt(const std::array<std::uint8_t, size>& block, std::size_t at) {
    return static_cast<std::uint16_t>(block[at] | block[at + 1] << 8);
}

bool skipName(std::FILE* file) {
    int c = 0;
    do {
        c = std::fgetc(file);
    } while (c > 0);
    return c == 0;
}

} // namespace

std::vector<std::uint16_t> readFolderIndices(std::FILE* cabinet) {
    std::vector<std::uint16_t> indices;
    std::array<std::uint8_t, headerSize> header{};
    if (std::fseek(cabinet, 0, SEEK_SET) != 0 || !readBlock(cabinet, header)) {
        return indices;
    }
    const long first = wordAt(header, firstFileField) |
                       static_cast<long>(wordAt(header, firstFileField + 2)) << 16;
    const std::uint16_t count = wordAt(header, fileCountField);
    if (std::fseek(cabinet, first, SEEK_SET) != 0) {
        return indices;
    }
    std::array<std::uint8_t, memberSize> member{};
    while (indices.size() < count && readBlock(cabinet, member) && skipName(cabinet)) {
        indices.push_back(wordAt(member, folderIndexField));
    }
    return indices;
}

} // namespace platform::posix
