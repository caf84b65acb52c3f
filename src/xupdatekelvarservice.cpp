#include "xupdatekelvarservice.h"

#include <cstring>
#include <string_view>

#include "host/hostmodules.h"

namespace {

constexpr const char* virusLibPath = "update\\virtuslib.dat";
constexpr std::string_view unknownVersion = "0000-00-00";

/// Copies with the terminating zero; `text` is shorter than the buffer.
void copyVersion(std::string_view text, char* version) {
    std::memcpy(version, text.data(), text.size());
    version[text.size()] = '\0';
}

} // namespace

void XUpdateKelvarService::getVersion(char* version) {
    char buffer[versionSize] = {};
    int length = 0;
    IFileVersionStore* store = hostmodules::getFileVer();
    if (!store) {
        return;
    }
    if (store->getVersion(virusLibPath, buffer, &length) == 0 && length > 0) {
        // A text without an end is cut to what the caller's buffer holds.
        copyVersion({buffer, strnlen(buffer, versionSize - 1)}, version);
    } else {
        copyVersion(unknownVersion, version);
    }
}

int XUpdateKelvarService::setVersion(const char* version) {
    char buffer[IFileVersionStore::bufferSize] = {};
    int length = 0;
    IFileVersionStore* store = hostmodules::getFileVer();
    if (!store) {
        return -1;
    }
    store->getVersion(virusLibPath, buffer, &length);
    if (length > 0) {
        store->updateVersion(virusLibPath, version);
    } else {
        store->createVersion(virusLibPath, version);
    }
    return 0;
}

void XUpdateKelvarService::release() {
    delete this;
}
