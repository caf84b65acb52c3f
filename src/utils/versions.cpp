#include <algorithm>

#include "host/hostmodules.h"
#include "platform/fileversion.h"
#include "platform/paths.h"
#include "utils/utils.h"

namespace {

std::string readFileVersionText(const std::string& path) {
    const std::optional<platform::FileVersion> version = platform::readFileVersion(path);
    if (!version) {
        return {};
    }
    std::string text;
    for (const std::uint16_t word : *version) {
        text += (text.empty() ? "" : ".") + std::to_string(word);
    }
    return text;
}

} // namespace

namespace utils {

std::string getFileVersion(const char* path, bool* isFileVersion) {
    if (!path) {
        return {};
    }
    *isFileVersion = true;
    std::string file = path;
    std::replace(file.begin(), file.end(), '/', '\\');
    if (getAppDir().empty()) {
        *isFileVersion = false;
        return {};
    }
    const std::string folder = getAppDir() + "\\";
    if (platform::isRelativePath(file)) {
        file.insert(0, folder);
    }
    std::string version = readFileVersionText(file);
    if (!version.empty()) {
        return version;
    }
    if (const std::size_t at = file.find(folder); at != std::string::npos) {
        file.erase(at, folder.size());
    }
    *isFileVersion = false;
    return getDataFileVersion(file);
}

bool hasFileVersion(const char* path) {
    return !readFileVersionText(path).empty();
}

int compareVersion(const std::string& a, const std::string& b) {
    std::vector<std::string> partsA;
    std::vector<std::string> partsB;
    splitString(a, ".", partsA);
    splitString(b, ".", partsB);
    const std::size_t common = std::min(partsA.size(), partsB.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int numberA = toInt(partsA[i]);
        const int numberB = toInt(partsB[i]);
        if (numberA != numberB) {
            return numberA < numberB ? -1 : 1;
        }
    }
    // A missing part is not read as 0: with equal leading parts the longer side wins.
    if (partsA.size() == partsB.size()) {
        return 0;
    }
    return partsA.size() > partsB.size() ? 1 : -1;
}

std::string getDataFileVersion(const std::string& path) {
    IFileVersionStore* store = hostmodules::getFileVer();
    if (!store) {
        return {};
    }
    char buffer[IFileVersionStore::bufferSize] = {};
    int length = 0;
    store->getVersion(path.c_str(), buffer, &length);
    return {buffer, static_cast<std::size_t>(std::clamp(length, 0, IFileVersionStore::bufferSize))};
}

bool setDataFileVersion(const std::string& path, const std::string& version) {
    IFileVersionStore* store = hostmodules::getFileVer();
    if (!store) {
        return false;
    }
    char buffer[IFileVersionStore::bufferSize] = {};
    int length = 0;
    store->getVersion(path.c_str(), buffer, &length);
    if (length > 0) {
        store->updateVersion(path.c_str(), version.c_str());
    } else {
        store->createVersion(path.c_str(), version.c_str());
    }
    return true;
}

} // namespace utils
