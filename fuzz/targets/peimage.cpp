#include <memory>

#include "fuzz/fuzz.h"
#include "platform/files.h"
#include "platform/fileversion.h"
#include "platform/versionblock.h"
#include "tests/platform/temporaryfolder.h"

// Images: what the materials' own versions are read from. Input: the image.

namespace {

using platform::image::Bytes;

constexpr std::size_t maxResourceSize = 0xFFFF;

/// A block and those below it lie within their parents.
void blocksLieWithin(const Bytes& resource, std::size_t at, std::size_t limit, int depth) {
    const auto block = platform::image::parseBlock(resource, at, limit);
    if (!block || depth == 0) {
        return;
    }
    fuzz::require(block->end <= limit && block->end > at, "a block ends within its parent");
    fuzz::require(block->value + block->valueSize <= block->children &&
                      block->children <= block->end,
                  "a value ends before the blocks behind it");
    blocksLieWithin(resource, block->children, block->end, depth - 1);
    blocksLieWithin(resource, (block->end + 3) & ~std::size_t{3}, limit, depth - 1);
}

std::vector<Bytes> resourcesOf(const std::string& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(platform::openFile(path, "rb"),
                                                               std::fclose);
    return platform::image::readVersionResources(file.get());
}

} // namespace

FUZZ_TARGET(peimage) {
    static const TemporaryFolder folder;
    const std::string path = folder.write("image.dll", input);
    const std::vector<Bytes> resources = resourcesOf(path);
    for (const Bytes& resource : resources) {
        fuzz::require(resource.size() <= maxResourceSize, "a resource's size has 16 bits");
        constexpr int depth = 8;
        blocksLieWithin(resource, 0, resource.size(), depth);
    }
    const auto version = platform::readFileVersion(path);
    fuzz::require(!version || !resources.empty(), "a version lies in a resource");
    if (version) {
        const std::string longer = folder.write("longer.dll", input + "what a package brings");
        fuzz::require(platform::readFileVersion(longer) == version,
                      "what lies behind an image does not change its version");
    }
}
