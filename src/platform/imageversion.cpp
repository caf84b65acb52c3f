#include "platform/imageversion.h"

#include "platform/files.h"
#include "platform/versionblock.h"

#include <memory>

namespace platform {

using image::Bytes;
using Resources = std::vector<Bytes>;

namespace {

constexpr std::uint32_t fixedInfoSignature = 0xFEEF04BD;
constexpr std::size_t fixedInfoSize = 52;
constexpr std::size_t versionField = 8;

bool hasTranslation(const Bytes& resource, const image::VersionBlock& root) {
    const auto info = image::findChild(resource, root, "VarFileInfo");
    const auto translation = info ? image::findChild(resource, *info, "Translation") : std::nullopt;
    return translation && translation->valueSize > 0;
}

std::optional<FileVersion> fixedVersion(const Bytes& resource, const image::VersionBlock& root) {
    if (root.valueSize < fixedInfoSize ||
        image::longAt(resource, root.value) != fixedInfoSignature) {
        return std::nullopt;
    }
    const auto word = [&](std::size_t offset) {
        return *image::wordAt(resource, root.value + versionField + offset);
    };
    return FileVersion{word(2), word(0), word(6), word(4)};
}

std::optional<FileVersion> versionOf(const Bytes& resource) {
    const auto root = image::parseBlock(resource, 0, resource.size());
    return root && root->key == "VS_VERSION_INFO" && hasTranslation(resource, *root)
               ? fixedVersion(resource, *root)
               : std::nullopt;
}

} // namespace

std::optional<FileVersion> readImageVersion(const std::string& path) {
    std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(openFile(path, "rb"), std::fclose);
    std::optional<FileVersion> first;
    for (const Bytes& resource : file ? image::readVersionResources(file.get()) : Resources()) {
        const auto version = versionOf(resource);
        if (!version) {
            return std::nullopt;
        }
        first = first ? first : version;
    }
    return first;
}

} // namespace platform
