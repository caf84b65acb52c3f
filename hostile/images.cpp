#include "hostile/images.h"

#include "hostile/mutation.h"
#include "sandbox/materials/littleendian.h"
#include "sandbox/materials/pefile.h"

namespace hostile {

namespace {

using namespace materials;

// Where fields of the sound image lie.
constexpr std::size_t sectionHeader = 328;
constexpr std::size_t resources = 512;
constexpr std::size_t languages = resources + 48; ///< the directory of the one version resource
constexpr std::size_t dataEntry = 72;             ///< behind it, from the start of the resources
constexpr std::size_t entrySize = 8;
constexpr std::uint32_t resourceAddress = 0x1000;

void putLong(Bytes& bytes, std::size_t at, std::size_t value) {
    putWord(bytes, at, static_cast<std::uint32_t>(value & 0xFFFF));
    putWord(bytes, at + 2, static_cast<std::uint32_t>(value >> 16));
}

} // namespace

Bytes soundImage(std::uint64_t seed) {
    return buildPeFile({.version = {2, 0, 0, 0}, .name = "module.dll", .size = 2048, .seed = seed});
}

Bytes brokenImage(std::uint64_t seed) {
    Mutation mutation(seed);
    Bytes image = soundImage(seed);
    const std::size_t reach = mutation.below(16) == 0 ? image.size() : 1300;
    for (std::size_t changes = 1 + mutation.below(4); changes > 0; --changes) {
        mutation.change(image, reach);
    }
    return image;
}

Bytes imageOfLanguages(std::uint16_t count, std::size_t resourceSize) {
    Bytes image =
        buildPeFile({.version = {2, 0, 0, 0}, .description = std::string(resourceSize / 2, 'd')});
    const std::size_t added = (count - std::size_t{1}) * entrySize;
    const std::size_t sectionSize = image.size() - resources + added;
    putLong(image, sectionHeader + 8, sectionSize);
    putLong(image, sectionHeader + 16, sectionSize);
    putWord(image, languages + 14, count);
    putLong(image, languages + 20, dataEntry + added);
    putLong(image, resources + dataEntry, resourceAddress + dataEntry + 16 + added);
    const auto first = image.begin() + languages + 16;
    const Bytes entry(first, first + entrySize);
    Bytes more;
    for (std::uint16_t i = 1; i < count; ++i) {
        append(more, entry);
    }
    image.insert(first, more.begin(), more.end());
    return image;
}

} // namespace hostile
