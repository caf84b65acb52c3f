#include "platform/cabinet.h"

#include "sandbox/materials/cabwriter.h"
#include "temporaryfolder.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using enum CabinetNotification;
using materials::buildCabinet;
using materials::Bytes;
using materials::CabMethod;

/// Text with repetitions, which compresses, with some noise in it.
Bytes proseOf(std::size_t size) {
    Bytes bytes = materials::randomBytes(size, size);
    for (std::size_t at = 0; at < size; ++at) {
        if (at % 16 != 0) {
            bytes[at] = static_cast<std::uint8_t>("the quick brown \xff"[at % 17]);
        }
    }
    return bytes;
}

class CabinetFile : public testing::Test {
protected:
    /// What a walk tells its callback.
    using Seen = std::vector<std::pair<CabinetNotification, std::string>>;
    using Decide = std::function<std::uint32_t(CabinetMember&)>;

    void has(const Bytes& bytes) const { folder.write("in.cab", bytes); }

    bool walk(const Decide& decide, std::uint32_t afterwards = 0) {
        seen.clear();
        const auto callback = [&](CabinetNotification notification, CabinetMember& member) {
            seen.emplace_back(notification, member.nameInCabinet);
            return notification == fileInCabinet ? decide(member) : afterwards;
        };
        return iterateCabinet(folder.path("in.cab"), callback);
    }
    /// Takes every member, to one path or into the folder by its name.
    bool expand(const std::optional<std::string>& target = {}, std::uint32_t afterwards = 0) {
        const auto take = [&](CabinetMember& member) {
            member.fullTargetName = target ? *target : folder.path(member.nameInCabinet);
            return cabinetDoIt;
        };
        return walk(take, afterwards);
    }
    bool holds(const std::string& name, const Bytes& content) const {
        return folder.read(name) == std::string(content.begin(), content.end());
    }

    TemporaryFolder folder;
    Seen seen;
};

class EveryMethod : public CabinetFile, public testing::WithParamInterface<CabMethod> {};

INSTANTIATE_TEST_SUITE_P(Cabinet, EveryMethod,
                         testing::Values(CabMethod::stored, CabMethod::mszip, CabMethod::quantum,
                                         CabMethod::lzx));

TEST_P(EveryMethod, ExpandsBitByBit) {
    // The last ones come over longer files.
    for (const std::size_t size : {0U, 1U, 32767U, 32768U, 32769U, 1U << 20, 40000U, 7U}) {
        const Bytes noise = materials::randomBytes(size, size);
        has(buildCabinet(GetParam(), {{"noise", noise}, {"prose", proseOf(size)}}));
        EXPECT_TRUE(expand()) << size;
        EXPECT_TRUE(holds("noise", noise)) << size;
        EXPECT_TRUE(holds("prose", proseOf(size))) << size;
    }
}

TEST_P(EveryMethod, ACutCabinetLeavesNoHalfMember) {
    const Bytes whole = proseOf(40000);
    const Bytes cabinet = buildCabinet(GetParam(), {{"a", whole}, {"b", proseOf(100)}});
    for (std::size_t size = 0; size < cabinet.size(); size += size < 150 ? 1 : 997) {
        has({cabinet.begin(), cabinet.begin() + static_cast<long>(size)});
        EXPECT_FALSE(expand()) << size;
        EXPECT_TRUE(!folder.read("a") || holds("a", whole)) << size;
        EXPECT_FALSE(folder.read("b")) << size;
        std::filesystem::remove(folder.onDisk("a"));
    }
}

TEST_P(EveryMethod, DamageIsFoundAndNeverHarms) {
    const Bytes cabinet = buildCabinet(GetParam(), {{"a", proseOf(600)}});
    constexpr std::size_t firstBlock = 36 + 8 + 16 + 2;
    for (std::size_t at = 0; at < cabinet.size(); ++at) {
        Bytes damaged = cabinet;
        damaged[at] ^= 0xFF;
        has(damaged);
        const bool expanded = expand(folder.path("out"));
        EXPECT_FALSE(expanded && at >= firstBlock) << at;
        EXPECT_EQ(folder.entryCount(), expanded ? 2U : 1U) << at;
        std::filesystem::remove(folder.onDisk("out"));
    }
}

TEST_F(CabinetFile, NamesComeAsTheyAre) {
    for (const std::string name :
         {"..\\..\\evil.dll", "C:\\evil.dll", "\\evil.dll", "a/../b", "sub\\n\xC3\xA4me", "\xE4"}) {
        has(buildCabinet(CabMethod::stored, {{name, {1}}}));
        EXPECT_TRUE(walk([](CabinetMember&) { return cabinetSkip; })) << name;
        EXPECT_EQ(seen, (Seen{{fileInCabinet, name}}));
    }
    EXPECT_EQ(folder.entryCount(), 1U);
}

TEST_F(CabinetFile, TheCallbackEndsTheWalk) {
    has(buildCabinet(CabMethod::mszip, {{"a", {1}}, {"b", {2}}}));
    EXPECT_FALSE(walk([](CabinetMember&) { return cabinetAbort; }));
    EXPECT_EQ(seen.size(), 1U);
    EXPECT_EQ(folder.entryCount(), 1U);
    EXPECT_FALSE(expand({}, 5));
    EXPECT_EQ(seen.size(), 2U);
    EXPECT_EQ(folder.read("a"), "\1");
}

TEST_F(CabinetFile, AMemberNeedsAFileThatCanBeWritten) {
    has(buildCabinet(CabMethod::mszip, {{"first", {1}}, {"sub\\second", {2}}}));
    EXPECT_FALSE(expand());
    EXPECT_EQ(folder.read("first"), "\1");
    std::filesystem::create_directory(folder.onDisk("sub"));
    EXPECT_TRUE(expand());
    EXPECT_EQ(folder.read("sub/second"), "\2");
    for (const std::string& target : {std::string(), folder.path(), folder.path("in.cab"),
                                      folder.path(std::string(300, 'a'))}) {
        EXPECT_FALSE(expand(target)) << target;
        EXPECT_GT(fileSize(folder.path("in.cab")), 0U);
    }
}

/// Turns the last member of a one-folder cabinet into one that goes on in "next.cab".
Bytes spanning(Bytes cabinet, std::size_t lastMember, std::size_t lastBlock) {
    const std::string names("next.cab\0disk\0", 14);
    cabinet[30] = 2;
    cabinet[lastMember + 8] = 0xFE;
    cabinet[lastMember + 9] = 0xFF;
    for (const std::size_t field : {0U, 1U, 2U, 3U, 6U, 7U}) { // no checksum, no end of the block
        cabinet[lastBlock + field] = 0;
    }
    for (const std::size_t field : {8U, 16U, 36U}) {
        cabinet[field] = static_cast<std::uint8_t>(cabinet[field] + names.size());
    }
    cabinet.insert(cabinet.begin() + 36, names.begin(), names.end());
    return cabinet;
}

TEST_F(CabinetFile, ACabinetThatGoesOnElsewhereFails) {
    const Bytes block(32768, 1);
    const Bytes cabinet = buildCabinet(CabMethod::stored, {{"a", block}, {"b", {2}}});
    has(spanning(cabinet, 44 + 18, cabinet.size() - 8 - 1));
    EXPECT_FALSE(expand());
    EXPECT_TRUE(holds("a", block));
    EXPECT_EQ(seen.back(), std::pair(needNewCabinet, std::string("next.cab")));
    EXPECT_EQ(folder.entryCount(), 2U);
}

TEST_F(CabinetFile, TellsWhatAllItsMembersAskFor) {
    constexpr std::size_t folderCount = 26;
    constexpr std::size_t firstMember = 16;
    constexpr std::size_t second = 44 + 18; // behind the header, the folder and the first one
    constexpr std::size_t inFolder = second + 4;
    constexpr std::size_t whichFolder = second + 8;
    const Bytes sound =
        buildCabinet(CabMethod::stored, {{"a", Bytes(100)}, {"b", Bytes(50)}, {"c", {}}});
    const struct {
        const char* what;
        std::size_t at;
        std::uint8_t byte;
        std::optional<std::uint64_t> bytes;
    } rows[] = {
        {"sound", 0, 'M', 150},
        {"the second one ahead of it", inFolder, 99, 100 + 149 + 1},
        {"a gap before it", inFolder, 200, 250 + 150},
        {"in another folder", whichFolder, 1, 100 + 150 + 150},
        {"at the folder's end", inFolder + 3, 0x80, 0x80000000ULL + 150 + 150},
        {"no cabinet", 0, 'm', std::nullopt},
        {"more folders than there are", folderCount, 2, std::nullopt},
        {"members elsewhere", firstMember, 40, std::nullopt},
    };
    for (const auto& row : rows) {
        Bytes cabinet = sound;
        cabinet[row.at] = row.byte;
        has(cabinet);
        const auto extent = cabinetExtent(folder.path("in.cab"));
        EXPECT_EQ(extent.has_value(), row.bytes.has_value()) << row.what;
        EXPECT_TRUE(!extent || (extent->members == 3 && extent->unpackedBytes == row.bytes))
            << row.what << " " << extent->unpackedBytes;
    }
    for (const std::size_t size : {0U, 35U, 50U, 61U, 79U}) {
        has({sound.begin(), sound.begin() + static_cast<long>(size)});
        EXPECT_FALSE(cabinetExtent(folder.path("in.cab"))) << size;
    }
    Bytes named = buildCabinet(CabMethod::stored, {{std::string(255, 'a'), {1}}});
    has(named);
    EXPECT_TRUE(cabinetExtent(folder.path("in.cab")));
    named.insert(named.begin() + second, 'a');
    has(named);
    EXPECT_FALSE(cabinetExtent(folder.path("in.cab")));
    EXPECT_FALSE(cabinetExtent(folder.path("none")));
}

} // namespace
