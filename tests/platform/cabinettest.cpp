#include "platform/cabinet.h"

#include "sandbox/materials/cabwriter.h"
#include "temporaryfolder.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;
using materials::buildCabinet;
using materials::Bytes;
using materials::CabMethod;

constexpr CabMethod allMethods[] = {CabMethod::stored, CabMethod::mszip, CabMethod::quantum,
                                    CabMethod::lzx};

std::string textOf(const Bytes& bytes) {
    return {bytes.begin(), bytes.end()};
}

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

/// One entry of what a walk tells its callback.
struct Seen {
    CabinetNotification notification;
    std::string name;

    bool operator==(const Seen&) const = default;
};

class CabinetFile : public testing::Test {
protected:
    void has(const Bytes& bytes) const { folder.write("in.cab", bytes); }

    /// Expands into the folder, member names as they are.
    bool expand() {
        return walk([this](CabinetMember& member) {
            member.fullTargetName = folder.path(member.nameInCabinet);
            return cabinetDoIt;
        });
    }

    bool walk(const std::function<std::uint32_t(CabinetMember&)>& decide,
              std::uint32_t afterwards = 0) {
        seen.clear();
        return iterateCabinet(folder.path("in.cab"), [&](CabinetNotification notification,
                                                         CabinetMember& member) {
            seen.push_back({notification, member.nameInCabinet});
            return notification == CabinetNotification::fileInCabinet ? decide(member) : afterwards;
        });
    }

    TemporaryFolder folder;
    std::vector<Seen> seen;
};

TEST_F(CabinetFile, ExpandsBitByBit) {
    for (const CabMethod method : allMethods) {
        for (const std::size_t size : {0U, 1U, 32767U, 32768U, 32769U, 1U << 20}) {
            SCOPED_TRACE(std::to_string(static_cast<int>(method)) + "/" + std::to_string(size));
            const Bytes noise = materials::randomBytes(size, size);
            has(buildCabinet(method, {{"noise", noise}, {"prose", proseOf(size)}}));
            EXPECT_TRUE(expand());
            EXPECT_TRUE(folder.read("noise") == textOf(noise));
            EXPECT_TRUE(folder.read("prose") == textOf(proseOf(size)));
        }
    }
}

TEST_F(CabinetFile, TellsTheMembersInOrder) {
    has(buildCabinet(
        {{CabMethod::lzx, {{"a", {1}}, {"b", {2}}}}, {CabMethod::mszip, {{"c", {}}}}}));
    EXPECT_TRUE(walk([this](CabinetMember& member) {
        member.fullTargetName = folder.path("target");
        return member.nameInCabinet == "b" ? cabinetDoIt : cabinetSkip;
    }));
    using enum CabinetNotification;
    EXPECT_EQ(seen, (std::vector<Seen>{{fileInCabinet, "a"},
                                       {fileInCabinet, "b"},
                                       {fileExtracted, "b"},
                                       {fileInCabinet, "c"}}));
    EXPECT_EQ(folder.read("target"), "\2");
}

TEST_F(CabinetFile, NamesComeAsTheyAre) {
    for (const std::string name :
         {"..\\..\\evil.dll", "C:\\evil.dll", "\\evil.dll", "a/../b", "sub\\n\xC3\xA4me", "\xE4"}) {
        has(buildCabinet(CabMethod::stored, {{name, {1}}}));
        EXPECT_TRUE(walk([](CabinetMember&) { return cabinetSkip; })) << name;
        EXPECT_EQ(seen.at(0).name, name);
        EXPECT_EQ(folder.entryCount(), 1U);
    }
}

TEST_F(CabinetFile, TheCallbackEndsTheWalk) {
    has(buildCabinet(CabMethod::mszip, {{"a", {1}}, {"b", {2}}}));
    EXPECT_FALSE(walk([](CabinetMember&) { return cabinetAbort; }));
    EXPECT_EQ(seen.size(), 1U);
    EXPECT_EQ(folder.entryCount(), 1U);
    const auto take = [this](CabinetMember& member) {
        member.fullTargetName = folder.path(member.nameInCabinet);
        return cabinetDoIt;
    };
    EXPECT_FALSE(walk(take, 5));
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
    const std::string targets[] = {"", folder.path(), folder.path("in.cab"),
                                   folder.path(std::string(300, 'a'))};
    for (const std::string& target : targets) {
        EXPECT_FALSE(walk([&](CabinetMember& member) {
            member.fullTargetName = target;
            return cabinetDoIt;
        })) << target;
        EXPECT_GT(fileSize(folder.path("in.cab")), 0U);
    }
}

/// Turns the last member of a one-folder cabinet into one that goes on in "next.cab".
Bytes spanning(Bytes cabinet, std::size_t lastMember) {
    const std::string names("next.cab\0disk\0", 14);
    cabinet[30] = 2;
    cabinet[lastMember + 8] = 0xFE;
    cabinet[lastMember + 9] = 0xFF;
    for (const std::size_t field : {8U, 16U, 36U}) {
        cabinet[field] = static_cast<std::uint8_t>(cabinet[field] + names.size());
    }
    cabinet.insert(cabinet.begin() + 36, names.begin(), names.end());
    return cabinet;
}

TEST_F(CabinetFile, ACabinetThatGoesOnElsewhereFails) {
    has(spanning(buildCabinet(CabMethod::stored, {{"a", {1}}, {"b", {2}}}), 44 + 18));
    EXPECT_FALSE(expand());
    EXPECT_EQ(folder.read("a"), "\1");
    EXPECT_EQ(seen.back(), (Seen{CabinetNotification::needNewCabinet, "next.cab"}));
    EXPECT_EQ(folder.entryCount(), 2U);
}

TEST_F(CabinetFile, WhatIsNoCabinetFails) {
    EXPECT_FALSE(expand());
    for (const std::size_t size : {0U, 4U, 36U, 5000U}) {
        Bytes bytes = materials::randomBytes(size, size);
        has(bytes);
        EXPECT_FALSE(expand());
        std::copy_n("MSCF", std::min<std::size_t>(4, size), bytes.begin());
        has(bytes);
        EXPECT_FALSE(expand());
    }
    EXPECT_TRUE(seen.empty());
}

TEST_F(CabinetFile, ACutCabinetLeavesNoHalfMember) {
    for (const CabMethod method : allMethods) {
        const Bytes whole = proseOf(40000);
        const Bytes cabinet = buildCabinet(method, {{"a", whole}, {"b", proseOf(100)}});
        for (std::size_t size = 0; size < cabinet.size(); size += size < 150 ? 1 : 997) {
            has({cabinet.begin(), cabinet.begin() + static_cast<long>(size)});
            EXPECT_FALSE(expand()) << static_cast<int>(method) << " " << size;
            const auto left = folder.read("a");
            EXPECT_TRUE(!left || left == textOf(whole));
            EXPECT_FALSE(folder.read("b"));
            std::filesystem::remove(folder.onDisk("a"));
        }
    }
}

TEST_F(CabinetFile, DamageIsFoundAndNeverHarms) {
    for (const CabMethod method : allMethods) {
        const Bytes cabinet = buildCabinet(method, {{"a", proseOf(600)}});
        constexpr std::size_t firstBlock = 36 + 8 + 16 + 2;
        for (std::size_t at = 0; at < cabinet.size(); ++at) {
            Bytes damaged = cabinet;
            damaged[at] ^= 0xFF;
            has(damaged);
            const bool expanded = walk([this](CabinetMember& member) {
                member.fullTargetName = folder.path("out");
                return cabinetDoIt;
            });
            EXPECT_FALSE(expanded && at >= firstBlock) << static_cast<int>(method) << " " << at;
            EXPECT_EQ(folder.entryCount(), expanded ? 2U : 1U) << at;
            std::filesystem::remove(folder.onDisk("out"));
        }
    }
}

} // namespace
