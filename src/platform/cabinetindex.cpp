#include "platform/cabinetindex.h"

#include <array>

namespace platform {

namespace {

constexpr std::uint32_t cabinetSignature = 0x4643534D; ///< "MSCF"
constexpr std::size_t headerSize = 36;
constexpr std::size_t firstMemberField = 16;
constexpr std::size_t folderCountField = 26;
constexpr std::size_t memberCountField = 28;
constexpr std::size_t flagsField = 30;
constexpr std::size_t reserveSizes = 4;
constexpr std::size_t folderSize = 8;
constexpr std::size_t memberSize = 16;
constexpr int maxText = 256; ///< of a name, with the zero behind it
constexpr std::uint16_t hasPrevious = 1;
constexpr std::uint16_t hasNext = 2;
constexpr std::uint16_t hasReserve = 4;

template <std::size_t size>
bool readBlock(std::FILE* file, std::array<std::uint8_t, size>& block) {
    return std::fread(block.data(), 1, size, file) == size;
}

template <std::size_t size>
std::uint16_t wordAt(const std::array<std::uint8_t, size>& block, std::size_t at) {
    return static_cast<std::uint16_t>(block[at] | block[at + 1] << 8);
}

template <std::size_t size>
std::uint32_t longAt(const std::array<std::uint8_t, size>& block, std::size_t at) {
    return wordAt(block, at) | std::uint32_t{wordAt(block, at + 2)} << 16;
}

/// Passes texts with a zero behind each.
bool skipTexts(std::FILE* file, int count) {
    for (; count > 0; --count) {
        int size = 0;
        int c = 1;
        while (c > 0 && size < maxText) {
            c = std::fgetc(file);
            ++size;
        }
        if (c != 0) {
            return false;
        }
    }
    return true;
}

/// The sizes of what is reserved for others: passes that of the header, returns that of a folder.
std::optional<std::size_t> passReserve(std::FILE* file) {
    std::array<std::uint8_t, reserveSizes> sizes{};
    if (!readBlock(file, sizes) || std::fseek(file, wordAt(sizes, 0), SEEK_CUR) != 0) {
        return std::nullopt;
    }
    return sizes[2];
}

/// Goes to the first member; false when it does not stand where the header says.
bool passFolders(std::FILE* file, const std::array<std::uint8_t, headerSize>& header) {
    const std::uint16_t flags = wordAt(header, flagsField);
    std::size_t folderStep = folderSize;
    if (flags & hasReserve) {
        const auto reserved = passReserve(file);
        if (!reserved) {
            return false;
        }
        folderStep += *reserved;
    }
    for (const std::uint16_t neighbour : {hasPrevious, hasNext}) {
        constexpr int texts = 2; // its name and its disk's
        if ((flags & neighbour) && !skipTexts(file, texts)) {
            return false;
        }
    }
    const auto folders = static_cast<long>(wordAt(header, folderCountField) * folderStep);
    return std::fseek(file, folders, SEEK_CUR) == 0 &&
           std::ftell(file) == static_cast<long>(longAt(header, firstMemberField));
}

} // namespace

std::optional<std::vector<CabinetEntry>> readCabinetIndex(std::FILE* cabinet) {
    std::array<std::uint8_t, headerSize> header{};
    if (std::fseek(cabinet, 0, SEEK_SET) != 0 || !readBlock(cabinet, header) ||
        longAt(header, 0) != cabinetSignature || !passFolders(cabinet, header)) {
        return std::nullopt;
    }
    std::vector<CabinetEntry> entries(wordAt(header, memberCountField));
    std::array<std::uint8_t, memberSize> member{};
    for (CabinetEntry& entry : entries) {
        if (!readBlock(cabinet, member) || !skipTexts(cabinet, 1)) {
            return std::nullopt;
        }
        entry = {longAt(member, 0), longAt(member, 4), wordAt(member, 8)};
    }
    return entries;
}

} // namespace platform
