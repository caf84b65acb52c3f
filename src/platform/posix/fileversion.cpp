#include "platform/fileversion.h"

#include "platform/imageversion.h"

namespace platform {

std::optional<FileVersion> readFileVersion(const std::string& path) {
    return readImageVersion(path);
}

} // namespace platform
