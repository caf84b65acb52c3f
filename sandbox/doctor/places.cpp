#include "sandbox/doctor/places.h"

#include <algorithm>
#include <stdexcept>

#include "sandbox/common/clientpath.h"
#include "sandbox/common/folders.h"

namespace sandbox::doctor {

namespace fs = std::filesystem;

namespace {

constexpr const char* driveOfRun = "d:\\client";

fs::path whenThere(const fs::path& path) {
    std::error_code error;
    return fs::exists(path, error) ? path : fs::path();
}

} // namespace

Places placesOf(const fs::path& folder) {
    std::error_code error;
    const fs::path whole = fs::absolute(folder, error).lexically_normal();
    if (folder.empty() || !fs::is_directory(whole, error)) {
        throw std::runtime_error("\"" + folder.string() + "\" is no folder");
    }
    Places places;
    const Folders folders(whole);
    if (!fs::exists(folders.config(), error)) {
        places.client = whole.has_filename() ? whole : whole.parent_path();
        return places;
    }
    places.client = folders.client();
    places.fileList = folders.home() / "OrvSecurity" / "config" / "uninst" / "filelist.xml";
    places.firstFileList = folders.state() / "filelist-start.xml";
    places.settings = folders.settings();
    places.versions = folders.versions();
    places.log = folders.log();
    places.storage = whenThere(folders.storage());
    places.hostLock = folders.hostLock();
    places.runState = folders.state() / "run.json";
    places.wine = whenThere(folders.root() / "wine");
    return places;
}

std::vector<std::string> Places::clientNames() const {
    if (!wine.empty()) {
        return {driveOfRun};
    }
    std::error_code error;
    return {comparablePath(toClientPath(client)),
            comparablePath(toClientPath(fs::canonical(client, error)))};
}

std::optional<std::string> pathBelow(const std::string& clientPath) {
    std::string text = clientPath;
    std::replace(text.begin(), text.end(), '\\', '/');
    const bool hasDrive = text.size() > 1 && text[1] == ':';
    const fs::path path = fs::path(text).lexically_normal();
    if (hasDrive || path.empty() || path == "." || path.has_root_path() || *path.begin() == "..") {
        return std::nullopt;
    }
    return toClientPath(path);
}

std::optional<std::string> pathBelow(const Places& places, const std::string& fullPath) {
    const std::string key = comparablePath(fullPath);
    for (const std::string& client : places.clientNames()) {
        if (!client.empty() && key.rfind(client + '\\', 0) == 0) {
            return pathBelow(fullPath.substr(client.size() + 1));
        }
    }
    return std::nullopt;
}

} // namespace sandbox::doctor
