#include "platform/fileversion.h"

#include "sandbox/materials/pefile.h"
#include "temporaryfolder.h"

#include <gtest/gtest.h>

namespace {

using materials::buildPeFile;
using materials::Bytes;
using materials::PeFile;
using platform::FileVersion;

constexpr std::size_t optionalHeader = 88;
constexpr std::size_t headersSize = 512;
constexpr std::size_t resourceSection = headersSize;

class Version : public testing::Test {
protected:
    std::optional<FileVersion> versionOf(const Bytes& image) const {
        return platform::readFileVersion(folder.write("module.dll", image));
    }

    TemporaryFolder folder;
};

/// The same image with the shorter optional header of a 32-bit one.
Bytes asPe32(Bytes image) {
    const auto start = image.begin() + optionalHeader;
    start[0] = 0x0B;
    start[1] = 0x01;
    image[optionalHeader - 4] = 224;
    image.erase(start + 72, start + 88);
    image.insert(image.begin() + headersSize - 16, 16, 0);
    return image;
}

TEST_F(Version, ComesFromTheResource) {
    const PeFile whole{{1, 0, 65535, 2}, "module.dll", "A module", true, 0, 0};
    PeFile padded = whole;
    padded.size = 100000;
    PeFile noTranslation = whole;
    noTranslation.hasTranslation = false;
    EXPECT_EQ(versionOf(buildPeFile(whole)), whole.version);
    EXPECT_EQ(versionOf(buildPeFile({{0, 0, 0, 0}})), FileVersion{});
    EXPECT_EQ(versionOf(buildPeFile(padded)), whole.version);
    EXPECT_EQ(buildPeFile(padded).size(), padded.size);
    EXPECT_EQ(versionOf(asPe32(buildPeFile(whole))), whole.version);
    EXPECT_EQ(versionOf(buildPeFile(noTranslation)), std::nullopt);
    EXPECT_EQ(versionOf({}), std::nullopt);
    EXPECT_EQ(versionOf(materials::randomBytes(5000, 1)), std::nullopt);
    EXPECT_EQ(platform::readFileVersion(folder.path("absent.dll")), std::nullopt);
    EXPECT_EQ(platform::readFileVersion(folder.path()), std::nullopt);
}

TEST_F(Version, IsNotReadFromACutFile) {
    const Bytes image = buildPeFile({{1, 2, 3, 4}, "module.dll", "A module"});
    for (std::size_t size = 0; size < image.size(); size += size < 1000 ? 1 : 101) {
        const auto version = versionOf({image.begin(), image.begin() + static_cast<long>(size)});
        EXPECT_TRUE(!version || version == FileVersion({1, 2, 3, 4})) << size;
        EXPECT_TRUE(!version || size > resourceSection + 500) << size;
    }
}

TEST_F(Version, ReaderStandsAnyDamage) {
    const Bytes image = buildPeFile({{1, 2, 3, 4}, "module.dll", "A module"});
    for (std::size_t at = 0; at < image.size(); ++at) {
        for (const int damage : {0x01, 0x80, 0xFF}) {
            Bytes damaged = image;
            damaged[at] = static_cast<std::uint8_t>(damaged[at] ^ damage);
            versionOf(damaged);
        }
        Bytes damaged = image;
        std::fill_n(damaged.begin() + static_cast<long>(at),
                    std::min<std::size_t>(4, image.size() - at), std::uint8_t{0xFF});
        versionOf(damaged);
    }
}

TEST_F(Version, ReaderStandsADirectoryThatHoldsItself) {
    Bytes image = buildPeFile({{1, 2, 3, 4}});
    for (const std::size_t level : {0U, 24U, 48U}) {
        std::fill_n(image.begin() + static_cast<long>(resourceSection + level + 20), 3,
                    std::uint8_t{0});
        image[resourceSection + level + 23] = 0x80;
        EXPECT_EQ(versionOf(image), std::nullopt) << level;
    }
}

} // namespace
