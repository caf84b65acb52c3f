#include <algorithm>

#include "hostile/cabinets.h"

// Small cabinets that fill a disk or keep a processor busy for hours.

namespace hostile {

namespace {

constexpr const char* bombGroup = "bombs";
constexpr std::uint32_t blockBytes = 32768;
constexpr std::uint32_t megabyte = 1 << 20;
constexpr std::uint32_t mostBytes = 1 << 30; ///< bytes to unpack that are still taken
constexpr std::size_t mostMembers = 4096;

std::string numbered(std::size_t i) {
    return "m" + std::to_string(i) + ".dat";
}

/// One folder of 32 MB, and members that each take some of it.
template <class MemberAt>
Bytes sharing(std::size_t count, std::size_t blocks, MemberAt memberAt) {
    RawCabinet cabinet{{zeroFolder(blocks)}, {}};
    for (std::size_t i = 0; i < count; ++i) {
        cabinet.members.push_back(memberAt(i));
    }
    return written(cabinet);
}

/// Members of a megabyte, all of them the same bytes of the file.
Bytes overlapping() {
    return sharing(2000, 32, [](std::size_t i) { return RawMember{numbered(i), megabyte, 0, 0}; });
}

/// A kilobyte is written, a terabyte unpacked: each member lies ahead of the one before.
Bytes backwards() {
    constexpr std::size_t blocks = 16384;
    return sharing(1000, blocks, [](std::size_t i) {
        const std::size_t end = blocks * blockBytes - i;
        return RawMember{numbered(i), 1, static_cast<std::uint32_t>(end - 1), 0};
    });
}

/// Each folder has the blocks of the first one.
Bytes foldersOfOneData() {
    constexpr std::size_t count = 40;
    constexpr std::uint16_t blocks = 1024;
    RawCabinet cabinet{{zeroFolder(blocks)}, {}};
    for (std::size_t i = 0; i < count; ++i) {
        const auto folder = static_cast<std::uint16_t>(i);
        cabinet.members.push_back({numbered(i), blocks * blockBytes, 0, folder});
    }
    std::size_t index = 36 + 8 * count;
    for (const RawMember& member : cabinet.members) {
        index += 16 + member.name.size() + 1;
    }
    const RawFolder shared{1, {}, static_cast<std::uint32_t>(index), blocks};
    cabinet.folders.resize(count, shared);
    return written(cabinet);
}

/// A reader has one folder open at a time.
Bytes toAndFro() {
    constexpr std::size_t count = 200;
    constexpr std::size_t blocks = 1024;
    RawCabinet cabinet{{zeroFolder(blocks), zeroFolder(blocks)}, {}};
    for (std::size_t i = 0; i < count; ++i) {
        const auto offset = static_cast<std::uint32_t>(blocks * blockBytes - count + i);
        cabinet.members.push_back({numbered(i), 1, offset, static_cast<std::uint16_t>(i % 2)});
    }
    return written(cabinet);
}

/// The wanted file behind a number of empty members, of which the first one is not there.
Bytes withEmpty(std::size_t count) {
    RawCabinet cabinet = soundCabinet();
    const RawMember& last = cabinet.members.back();
    cabinet.members.insert(cabinet.members.begin(), {"absent.dat", 1, last.offset + last.size, 0});
    for (std::size_t i = 1; i < count; ++i) {
        cabinet.members.insert(cabinet.members.end() - 2, {numbered(i), 0, 0, 0});
    }
    return written(cabinet);
}

/// A member that tells its size and has no data.
Bytes telling(std::uint32_t size) {
    RawCabinet cabinet = soundCabinet();
    cabinet.members.push_back({"large.dat", size, 0, 0});
    std::rotate(cabinet.members.begin(), cabinet.members.begin() + 2, cabinet.members.end());
    // What comes ahead of the two sound ones is unpacked a second time for them.
    return written(cabinet);
}

} // namespace

std::vector<BadCabinet> bombs() {
    constexpr std::size_t allBlocks = 0xFFFF;
    const auto sound = static_cast<std::uint32_t>(40 + wantedFile().size());
    const auto whole = [](std::size_t) {
        return RawMember{numbered(0), static_cast<std::uint32_t>(allBlocks * blockBytes), 0, 0};
    };
    const Reason tooMuch = Reason::tooMuch;
    return {
        {bombGroup, "2 GiB in one member", sharing(1, allBlocks, whole), Fate::untouched, tooMuch},
        {bombGroup, "2 GB in members that share their bytes", overlapping(), Fate::untouched,
         tooMuch},
        {bombGroup, "1 KB that takes a terabyte to unpack", backwards(), Fate::untouched, tooMuch},
        {bombGroup, "1.3 GB in folders that share their data", foldersOfOneData(), Fate::untouched,
         tooMuch},
        {bombGroup, "two folders by turns", toAndFro(), Fate::untouched, tooMuch},
        {bombGroup, "65,000 empty members", withEmpty(65'000), Fate::untouched, tooMuch},
        {bombGroup, "one member too many", withEmpty(mostMembers - 1), Fate::untouched, tooMuch},
        {bombGroup, "as many members as may be, and not there", withEmpty(mostMembers - 2)},
        {bombGroup, "4 GiB that are not there", telling(0xFFFFFFFF), Fate::untouched, tooMuch},
        {bombGroup, "a byte too much", telling(mostBytes - sound + 1), Fate::untouched, tooMuch},
        {bombGroup, "as much as may be, and not there", telling(mostBytes - sound), Fate::refused},
    };
}

} // namespace hostile
