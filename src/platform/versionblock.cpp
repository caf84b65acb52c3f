#include "platform/versionblock.h"

#include "platform/asciicase.h"

#include <algorithm>

namespace platform::image {

namespace {

constexpr std::size_t blockHeaderSize = 6;

std::size_t aligned(std::size_t offset) {
    return (offset + 3) & ~std::size_t{3};
}

} // namespace

std::optional<VersionBlock> parseBlock(const Bytes& resource, std::size_t at, std::size_t limit) {
    const std::size_t length = wordAt(resource, at).value_or(0);
    const std::size_t valueLength = wordAt(resource, at + 2).value_or(0);
    if (length < blockHeaderSize || at + length > std::min(limit, resource.size())) {
        return std::nullopt;
    }
    VersionBlock block;
    block.end = at + length;
    std::size_t next = at + blockHeaderSize;
    for (;; next += 2) {
        const auto unit = next + 2 <= block.end ? wordAt(resource, next) : std::nullopt;
        if (!unit) {
            return std::nullopt;
        }
        if (*unit == 0) {
            break;
        }
        block.key += *unit < 0x80 ? static_cast<char>(*unit) : '?';
    }
    block.value = std::min(aligned(next + 2), block.end);
    block.valueSize = std::min(valueLength, block.end - block.value);
    block.children = std::min(aligned(block.value + block.valueSize), block.end);
    return block;
}

std::optional<VersionBlock> findChild(const Bytes& resource, const VersionBlock& parent,
                                      std::string_view key) {
    std::size_t at = parent.children;
    while (auto child = parseBlock(resource, at, parent.end)) {
        if (equalIgnoringCase(child->key, key)) {
            return child;
        }
        at = aligned(child->end);
    }
    return std::nullopt;
}

} // namespace platform::image
