#include "sandbox/cli/clientstate.h"

#include <pugixml.hpp>

#include "platform/fileversion.h"
#include "sandbox/cli/filebytes.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/jsonfile.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr const char* updateFolder = "update\\";
constexpr const char* paddingKey = "KEY_UPDATE_KELVAR_PADDING_FILE_LIST";

std::string peVersionOf(const std::filesystem::path& file) {
    const auto version = platform::readFileVersion(toClientPath(file));
    if (!version) {
        return "";
    }
    std::string text;
    for (const std::uint16_t word : *version) {
        text += (text.empty() ? "" : ".") + std::to_string(word);
    }
    return text;
}

FileState stateOf(const std::filesystem::path& file, const std::string& path) {
    std::error_code error;
    return {path, std::filesystem::file_size(file, error), md5OfFile(file), peVersionOf(file)};
}

void readFiles(const std::filesystem::path& folder, ClientState& state) {
    std::error_code error;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder, error)) {
        if (!entry.is_regular_file() || isJournal(entry.path().filename().string())) {
            continue;
        }
        const std::string path = toClientPath(entry.path().lexically_relative(folder));
        const std::string key = comparablePath(path);
        if (key.rfind(updateFolder, 0) == 0) {
            const std::size_t cut = std::string_view(updateFolder).size();
            state.update[key.substr(cut)] = stateOf(entry.path(), path.substr(cut));
        } else {
            state.files[key] = stateOf(entry.path(), path);
        }
    }
}

/// A store that is not there is empty.
Json readStore(const std::filesystem::path& file, ClientState& state) {
    std::error_code error;
    Json store = readJson(file).value_or(Json());
    if (store.is_object()) {
        return store;
    }
    if (std::filesystem::exists(file, error)) {
        state.damaged.push_back(pathText(file.filename()) + " holds no JSON object");
    }
    return Json::object();
}

void readVersions(const std::filesystem::path& file, ClientState& state) {
    const Json versions = readStore(file, state);
    for (const auto& [path, version] : versions.items()) {
        state.versions[comparablePath(path)] =
            version.is_string() ? version.get<std::string>() : "";
    }
}

} // namespace

bool isJournal(const std::string& name) {
    return name == "delayed-moves.journal";
}

std::filesystem::path fileListPath(const Folders& folders) {
    return folders.home() / "OrvSecurity" / "config" / "uninst" / "filelist.xml";
}

std::optional<std::string> ClientState::versionAt(const std::string& path) const {
    const std::string key = comparablePath(path);
    const auto file = files.find(key);
    if (file == files.end()) {
        return std::nullopt;
    }
    if (!file->second.peVersion.empty()) {
        return file->second.peVersion;
    }
    const auto stored = versions.find(key);
    return stored == versions.end() ? "" : stored->second;
}

const FileState* ClientState::fileAt(const std::string& path) const {
    const std::string key = comparablePath(path);
    const bool inUpdate = key.rfind(updateFolder, 0) == 0;
    const auto& stands = inUpdate ? update : files;
    const auto found =
        stands.find(inUpdate ? key.substr(std::string_view(updateFolder).size()) : key);
    return found == stands.end() ? nullptr : &found->second;
}

std::map<std::string, std::string> ClientState::padding() const {
    const Json text = settings.value(paddingKey, Json(""));
    const Json list =
        text.is_string() ? Json::parse(text.get<std::string>(), nullptr, false) : Json();
    std::map<std::string, std::string> waiting;
    if (list.is_object()) {
        for (const auto& [target, file] : list.items()) {
            waiting[target] = file.is_string() ? file.get<std::string>() : "";
        }
    }
    return waiting;
}

std::filesystem::path firstFileListPath(const Folders& folders) {
    return folders.state() / "filelist-start.xml";
}

std::map<std::string, ListedFile> readFileList(const std::filesystem::path& file) {
    pugi::xml_document document;
    document.load_file(file.c_str());
    std::map<std::string, ListedFile> entries;
    for (const pugi::xml_node node : document.child("Root").child("FileList").children("File")) {
        ListedFile entry{node.attribute("Name").as_string(), node.attribute("Version").as_string(),
                         node.attribute("MD5").as_string(), node.attribute("IsPE").as_string(),
                         node.attribute("Size").as_string()};
        const std::string key = comparablePath(entry.name);
        entries.emplace(key, std::move(entry)); // of two, the first one counts
    }
    return entries;
}

ClientState readClient(const ClientSystem& system) {
    const Folders& folders = system.folders();
    ClientState state;
    readFiles(folders.client(), state);
    readVersions(folders.versions(), state);
    state.settings = readStore(folders.settings(), state);
    state.listed = readFileList(fileListPath(folders));
    state.pending = system.pending();
    return state;
}

} // namespace sandbox
