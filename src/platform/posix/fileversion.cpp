#include "platform/fileversion.h"

#include "platform/files.h"
#include "platform/posix/versionblock.h"

#include <memory>

namespace platform {

using posix::Bytes;

namespace {

constexpr std::uint32_t fixedInfoSignature = 0xFEEF04BD;
constexpr std::size_t fixedInfoSize = 52;
constexpr std::size_t versionField = 8;

bool hasTranslation(const Bytes& resource, const posix::VersionBlock& root) {
    const auto info = posix::findChild(resource, root, "VarFileInfo");
    const auto translation = info ? posix::findChild(resource, *info, "Translation") : std::nullopt;
    return translation && translation->valueSize > 0;
}

std::optional<FileVersion> fixedVersion(const Bytes& resource, const posix::VersionBlock& root) {
    if (root.valueSize < fixedInfoSize ||
        posix::longAt(resource, root.value) != fixedInfoSignature) {
        return std::nullopt;
    }
    const auto word = [&](std::size_t offset) {
        return *posix::wordAt(resource, root.value + versionField + offset);
    };
    return FileVersion{word(2), word(0), word(6), word(4)};
}

} // namespace

std::optional<FileVersion> readFileVersion(const std::string& path) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(openFile(path, "rb"), std::fclose);
    const auto resource = file ? posix::readVersionResource(file.get()) : std::nullopt;
    const auto root = resource ? posix::parseBlock(*resource, 0, resource->size()) : std::nullopt;
    if (!root || root->key != "VS_VERSION_INFO" || !hasTranslation(*resource, *root)) {
        return std::nullopt;
    }
    return fixedVersion(*resource, *root);
}

} // namespace platform
