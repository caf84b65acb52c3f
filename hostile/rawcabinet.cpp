#include "hostile/rawcabinet.h"

#include "sandbox/materials/cabwriter.h"
#include "sandbox/materials/littleendian.h"

namespace hostile {

namespace {

using namespace materials;

constexpr std::size_t headerSize = 36;
constexpr std::size_t folderSize = 8;
constexpr std::size_t memberSize = 16;
constexpr std::size_t blockSize = 32768;
constexpr std::size_t blockHeaderSize = 8;
constexpr std::uint16_t mszip = 1;
constexpr std::uint16_t hasPrevious = 1;
constexpr std::uint16_t hasNext = 2;
constexpr std::uint16_t formatVersion = 0x0103;
constexpr std::uint16_t someDate = 44 << 9 | 1 << 5 | 1;
constexpr std::uint16_t archiveAttribute = 0x20;

std::uint32_t narrowed(std::size_t value) {
    return static_cast<std::uint32_t>(value);
}

/// Names of the neighbours in the set, each with that of a disk.
Bytes neighbours(const RawCabinet& cabinet) {
    Bytes names;
    for (const std::string& name : {cabinet.previous, cabinet.next}) {
        if (!name.empty()) {
            appendText(names, name);
            appendText(names, std::string_view("\0disk\0", 6));
        }
    }
    return names;
}

Bytes membersOf(const RawCabinet& cabinet) {
    Bytes members;
    for (const RawMember& member : cabinet.members) {
        appendLong(members, member.size);
        appendLong(members, member.offset);
        appendWord(members, member.folder);
        appendWord(members, someDate);
        appendWord(members, 0);
        appendWord(members, archiveAttribute);
        appendText(members, member.name);
        members.push_back(0);
    }
    return members;
}

Bytes blocksOf(const RawFolder& folder) {
    Bytes bytes;
    for (const RawBlock& block : folder.blocks) {
        appendLong(bytes, block.sum);
        appendWord(bytes, narrowed(block.data.size()));
        appendWord(bytes, block.unpacked);
        append(bytes, block.data);
    }
    return bytes;
}

void appendHeader(Bytes& bytes, const RawCabinet& cabinet, std::size_t size, std::size_t members) {
    const int flags =
        (cabinet.previous.empty() ? 0 : hasPrevious) | (cabinet.next.empty() ? 0 : hasNext);
    appendText(bytes, "MSCF");
    appendLong(bytes, 0);
    appendLong(bytes, cabinet.size.value_or(narrowed(size)));
    appendLong(bytes, 0);
    appendLong(bytes, cabinet.firstMember.value_or(narrowed(members)));
    appendLong(bytes, 0);
    appendWord(bytes, formatVersion);
    appendWord(bytes, cabinet.folderCount.value_or(narrowed(cabinet.folders.size())));
    appendWord(bytes, cabinet.memberCount.value_or(narrowed(cabinet.members.size())));
    appendWord(bytes, static_cast<std::uint32_t>(flags));
    appendWord(bytes, 1); // of the set, and place in it
    appendWord(bytes, 0);
}

} // namespace

Bytes written(const RawCabinet& cabinet) {
    const Bytes names = neighbours(cabinet);
    const Bytes members = membersOf(cabinet);
    const std::size_t first = headerSize + names.size() + cabinet.folders.size() * folderSize;
    Bytes folders;
    Bytes blocks;
    for (const RawFolder& folder : cabinet.folders) {
        const std::size_t start = first + members.size() + blocks.size();
        appendLong(folders, folder.start.value_or(narrowed(start)));
        appendWord(folders, folder.blockCount.value_or(narrowed(folder.blocks.size())));
        appendWord(folders, folder.method);
        append(blocks, blocksOf(folder));
    }
    Bytes bytes;
    appendHeader(bytes, cabinet, first + members.size() + blocks.size(), first);
    for (const Bytes& part : {names, folders, members, blocks}) {
        append(bytes, part);
    }
    return bytes;
}

RawFolder storedFolder(const Bytes& content) {
    RawFolder folder{0, {}};
    for (std::size_t at = 0; at < content.size(); at += blockSize) {
        const std::size_t size = std::min(blockSize, content.size() - at);
        const auto begin = content.begin() + static_cast<long>(at);
        folder.blocks.push_back(
            {Bytes(begin, begin + static_cast<long>(size)), static_cast<std::uint16_t>(size)});
    }
    return folder;
}

RawFolder zeroFolder(std::size_t blocks) {
    constexpr std::size_t data = headerSize + folderSize + memberSize + 2 + blockHeaderSize;
    const Bytes one = buildCabinet(CabMethod::mszip, {{"x", Bytes(blockSize)}});
    const RawBlock block{Bytes(one.begin() + data, one.end()), blockSize};
    return {mszip, std::vector<RawBlock>(blocks, block)};
}

} // namespace hostile
