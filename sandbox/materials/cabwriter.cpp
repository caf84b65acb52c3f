#include "sandbox/materials/cabwriter.h"

#include "sandbox/materials/frameencoder.h"
#include "sandbox/materials/littleendian.h"

#include <algorithm>
#include <limits>
#include <stdexcept>

namespace materials {

namespace {

constexpr std::uint32_t headerSize = 36;
constexpr std::uint32_t folderEntrySize = 8;
constexpr std::uint16_t formatVersion = 0x0103;
constexpr std::size_t maxNameLength = 255;
constexpr std::uint16_t archiveAttribute = 0x20;
constexpr std::uint16_t utf8NameAttribute = 0x80;
/// 2024-01-01, 00:00, in the packed form of the format.
constexpr std::uint16_t memberDate = 44 << 9 | 1 << 5 | 1;

class StoredEncoder : public FrameEncoder {
public:
    std::uint16_t type() const override { return 0; }
    Bytes encode(std::span<const std::uint8_t> frame) override {
        return {frame.begin(), frame.end()};
    }
};

std::unique_ptr<FrameEncoder> makeEncoder(CabMethod method) {
    switch (method) {
    case CabMethod::mszip:
        return makeMszipEncoder();
    case CabMethod::quantum:
        return makeQuantumEncoder();
    case CabMethod::lzx:
        return makeLzxEncoder();
    case CabMethod::stored:
        break;
    }
    return std::make_unique<StoredEncoder>();
}

template <class Field>
Field fitting(std::size_t value, const char* what) {
    if (value > std::numeric_limits<Field>::max()) {
        throw std::length_error(std::string("too large for a cabinet: ") + what);
    }
    return static_cast<Field>(value);
}

/// Exclusive or of the 32-bit words; the rest counts with its first byte on top.
std::uint32_t checksum(std::span<const std::uint8_t> bytes, std::uint32_t start) {
    std::uint32_t sum = start;
    std::size_t at = 0;
    for (; at + 4 <= bytes.size(); at += 4) {
        sum ^= bytes[at] | std::uint32_t{bytes[at + 1]} << 8 | std::uint32_t{bytes[at + 2]} << 16 |
               std::uint32_t{bytes[at + 3]} << 24;
    }
    std::uint32_t rest = 0;
    for (; at < bytes.size(); ++at) {
        rest = rest << 8 | bytes[at];
    }
    return sum ^ rest;
}

Bytes dataBlock(const Bytes& data, std::size_t uncompressedSize) {
    Bytes sizes;
    appendWord(sizes, fitting<std::uint16_t>(data.size(), "a data block"));
    appendWord(sizes, static_cast<std::uint32_t>(uncompressedSize));
    Bytes block;
    appendLong(block, checksum(sizes, checksum(data, 0)));
    append(block, sizes);
    append(block, data);
    return block;
}

/// The compressed stream of a folder.
struct FolderData {
    std::uint16_t type = 0;
    std::uint16_t blockCount = 0;
    Bytes blocks;
};

FolderData compress(const CabFolder& folder) {
    Bytes stream;
    for (const CabMember& member : folder.members) {
        append(stream, member.content);
    }
    const std::unique_ptr<FrameEncoder> encoder = makeEncoder(folder.method);
    FolderData data;
    data.type = encoder->type();
    data.blockCount =
        fitting<std::uint16_t>((stream.size() + frameSize - 1) / frameSize, "a folder");
    for (std::size_t at = 0; at < stream.size(); at += frameSize) {
        const auto frame = std::span<const std::uint8_t>(stream).subspan(
            at, std::min(frameSize, stream.size() - at));
        append(data.blocks, dataBlock(encoder->encode(frame), frame.size()));
    }
    return data;
}

void appendMembers(Bytes& bytes, const CabFolder& folder, std::uint16_t folderIndex) {
    std::size_t offset = 0;
    for (const CabMember& member : folder.members) {
        const bool isAscii = std::all_of(member.name.begin(), member.name.end(),
                                         [](char c) { return static_cast<std::uint8_t>(c) < 128; });
        if (member.name.size() > maxNameLength) {
            throw std::length_error("too large for a cabinet: a name");
        }
        appendLong(bytes, fitting<std::uint32_t>(member.content.size(), "a member"));
        appendLong(bytes, fitting<std::uint32_t>(offset, "a member"));
        appendWord(bytes, folderIndex);
        appendWord(bytes, memberDate);
        appendWord(bytes, 0);
        appendWord(bytes, isAscii ? archiveAttribute : archiveAttribute | utf8NameAttribute);
        appendText(bytes, member.name);
        bytes.push_back(0);
        offset += member.content.size();
    }
}

void appendHeader(Bytes& cabinet, std::size_t size, std::size_t folderCount,
                  std::size_t memberCount) {
    appendText(cabinet, "MSCF");
    appendLong(cabinet, 0);
    appendLong(cabinet, fitting<std::uint32_t>(size, "all members together"));
    appendLong(cabinet, 0);
    appendLong(cabinet, static_cast<std::uint32_t>(headerSize + folderCount * folderEntrySize));
    appendLong(cabinet, 0);
    appendWord(cabinet, formatVersion);
    appendWord(cabinet, fitting<std::uint16_t>(folderCount, "the folders"));
    appendWord(cabinet, fitting<std::uint16_t>(memberCount, "the members"));
    for (int field = 0; field < 3; ++field) { // flags, set and place in it
        appendWord(cabinet, 0);
    }
}

} // namespace

Bytes buildCabinet(const std::vector<CabFolder>& folders) {
    std::vector<FolderData> compressed;
    Bytes members;
    std::size_t memberCount = 0;
    std::size_t dataSize = 0;
    for (const CabFolder& folder : folders) {
        appendMembers(members, folder, static_cast<std::uint16_t>(compressed.size()));
        memberCount += folder.members.size();
        compressed.push_back(compress(folder));
        dataSize += compressed.back().blocks.size();
    }
    std::size_t offset = headerSize + folders.size() * folderEntrySize + members.size();
    Bytes cabinet;
    appendHeader(cabinet, offset + dataSize, folders.size(), memberCount);
    for (const FolderData& folder : compressed) {
        appendLong(cabinet, static_cast<std::uint32_t>(offset));
        appendWord(cabinet, folder.blockCount);
        appendWord(cabinet, folder.type);
        offset += folder.blocks.size();
    }
    append(cabinet, members);
    for (const FolderData& folder : compressed) {
        append(cabinet, folder.blocks);
    }
    return cabinet;
}

Bytes buildCabinet(CabMethod method, const std::vector<CabMember>& members) {
    return buildCabinet({{method, members}});
}

} // namespace materials
