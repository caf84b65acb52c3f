#include "platform/fileversion.h"

#include "sandbox/materials/pefile.h"
#include "temporaryfolder.h"
#include "wine.h"

#include <gtest/gtest.h>

namespace {

using materials::buildPeFile;
using materials::Bytes;
using platform::FileVersion;

constexpr std::size_t optionalHeader = 88;
constexpr std::size_t headersSize = 512;
constexpr std::size_t resourceSection = headersSize;

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

class Version : public testing::Test {
protected:
    std::optional<FileVersion> versionOf(const Bytes& content) const {
        return platform::readFileVersion(folder.write("module.dll", content));
    }
    /// The same for the healthy image with other bytes in it.
    std::optional<FileVersion> versionWith(std::size_t at, const Bytes& bytes) const {
        Bytes damaged = image;
        std::copy_n(bytes.begin(), std::min(bytes.size(), image.size() - at),
                    damaged.begin() + static_cast<long>(at));
        return versionOf(damaged);
    }

    TemporaryFolder folder;
    const FileVersion version{1, 2, 65535, 0};
    const Bytes image = buildPeFile({version, "module.dll", "A module", true, 0, 0});
};

TEST_F(Version, ComesFromTheResource) {
    EXPECT_EQ(versionOf(image), version);
    EXPECT_EQ(versionOf(asPe32(image)), version);
    EXPECT_EQ(versionOf(buildPeFile({{0, 0, 0, 0}})), FileVersion{});
    const Bytes padded = buildPeFile({version, "module.dll", "A module", true, 100000, 0});
    EXPECT_EQ(padded.size(), 100000U);
    EXPECT_EQ(versionOf(padded), version);
    EXPECT_EQ(versionOf(buildPeFile({version, "no translation", "", false, 0, 0})), std::nullopt);
    EXPECT_EQ(versionOf(materials::randomBytes(5000, 1)), std::nullopt);
    EXPECT_EQ(platform::readFileVersion(folder.path("absent.dll")), std::nullopt);
    EXPECT_EQ(platform::readFileVersion(folder.path()), std::nullopt);
}

TEST_F(Version, ReaderStandsAnyDamage) {
    const std::size_t step = onWine() ? 13 : 1; // a new file costs Wine milliseconds
    for (std::size_t at = 0; at < image.size(); at += step) {
        for (const int mask : {0x01, 0x80, 0xFF}) {
            versionWith(at, {static_cast<std::uint8_t>(image[at] ^ mask)});
        }
        versionWith(at, {0xFF, 0xFF, 0xFF, 0xFF});
    }
}

TEST_F(Version, ReaderStandsADirectoryThatHoldsItself) {
    for (const std::size_t level : {0U, 24U, 48U}) {
        EXPECT_EQ(versionWith(resourceSection + level + 20, {0, 0, 0, 0x80}), std::nullopt)
            << level;
    }
}

} // namespace
