#include <gtest/gtest.h>

#include <set>

#include "hostile/cabinets.h"
#include "hostile/disk.h"
#include "hostile/images.h"
#include "platform/fileversion.h"
#include "platform/temporaryfolder.h"
#include "platform/wine.h"

namespace {

using namespace hostile;

/// A trial can be told about, and done again, by its seed alone.
TEST(Mutants, FollowFromTheirSeed) {
    constexpr std::uint64_t count = 200;
    std::set<Bytes> images;
    std::set<Bytes> cabinets;
    for (std::uint64_t seed = 0; seed < count; ++seed) {
        images.insert(brokenImage(seed));
        cabinets.insert(brokenCabinet(seed));
        EXPECT_EQ(brokenImage(seed), brokenImage(seed));
        EXPECT_EQ(brokenCabinet(seed), brokenCabinet(seed));
    }
    EXPECT_GT(images.size(), count * 9 / 10);
    EXPECT_GT(cabinets.size(), count * 9 / 10);
}

TEST(Mutants, AreReadWithoutHarm) {
    const TemporaryFolder folder;
    std::size_t withVersion = 0;
    const std::uint64_t count = onWine() ? 12 : 1500;
    for (std::uint64_t seed = 0; seed < count; ++seed) {
        const auto version = platform::readFileVersion(folder.write("m.dll", brokenImage(seed)));
        withVersion += version ? 1 : 0;
    }
    // Where one kind is missing nothing is tried any more.
    EXPECT_GT(withVersion, 0U);
    EXPECT_LT(withVersion, count);
}

TEST(Images, LanguagesThatShareTheirBytesTakeNoMemory) {
    const TemporaryFolder folder;
    const struct {
        std::size_t size;
        std::uint16_t count;
        bool hasVersion;
    } rows[] = {{100, 1, true},     {0, 500, true},       {10'000, 50, true},
                {10'000, 95, true}, {10'000, 110, false}, {60'000, 4000, false}};
    for (const auto& row : rows) {
        const Bytes image = imageOfLanguages(row.count, row.size);
        EXPECT_EQ(platform::readFileVersion(folder.write("m.dll", image)).has_value(),
                  row.hasVersion)
            << row.count << " of " << row.size;
    }
}

TEST(Disk, TellsWhatIsNewGoneOrOther) {
    const TemporaryFolder folder;
    folder.write("same", std::string("1"));
    folder.write("gone", std::string("1"));
    folder.write("other", std::string("1"));
    std::filesystem::create_directories(folder.onDisk("deep/er"));
    const Listing before = listed(folder.onDisk(""));
    std::filesystem::remove(folder.onDisk("gone"));
    folder.write("other", std::string("2"));
    std::filesystem::create_directory(folder.onDisk("made"));
    std::ofstream(folder.onDisk("deep/er/new")) << "1";
    const Listing after = listed(folder.onDisk(""));
    using Texts = std::vector<std::string>;
    EXPECT_EQ(differences(before, before, {}), Texts());
    EXPECT_EQ(differences(before, after, {}), (Texts{"-gone", "!other", "+deep/er/new", "+made"}));
    EXPECT_EQ(differences(before, after, {"deep/", "other", "gon"}), (Texts{"-gone", "+made"}));
}

} // namespace
