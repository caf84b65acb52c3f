#include "sandbox/doctor/reading.h"

#include <array>
#include <pugixml.hpp>

#include "sandbox/common/clientpath.h"
#include "sandbox/common/jsondepth.h"
#include "sandbox/doctor/settingnames.h"
#include "sandbox/platform/filewrites.h"

namespace sandbox::doctor {

namespace fs = std::filesystem;

namespace {

using Json = nlohmann::json;

void readOne(const fs::path& file, const std::string& path, Snapshot& snapshot, Report& report) {
    const std::string key = comparablePath(path);
    std::error_code error;
    const fs::file_type type = fs::symlink_status(file, error).type();
    if (!error && type != fs::file_type::regular) {
        report.add(Code::strangeFile, path, path + " is no plain file");
        snapshot.unread.insert(key);
    } else if (auto facts = factsOf(file, path)) {
        snapshot.files[key] = std::move(*facts);
        ++report.files;
    } else {
        report.add(Code::unreadableFile, path, path + " cannot be read");
        snapshot.unread.insert(key);
    }
}

/// The folder's entries; a folder that cannot be searched is a finding.
void readFolder(const fs::path& folder, Snapshot& snapshot, Report& report) {
    const fs::path& client = snapshot.places.client;
    std::error_code error;
    fs::directory_iterator at(folder, error);
    for (; !error && at != fs::directory_iterator(); at.increment(error)) {
        const fs::path& file = at->path();
        const std::string path = toClientPath(file.lexically_relative(client));
        std::error_code unknown;
        if (fs::symlink_status(file, unknown).type() == fs::file_type::directory) {
            readFolder(file, snapshot, report);
        } else if (path != journalFile) {
            readOne(file, path, snapshot, report);
        }
    }
    if (error) {
        const std::string path = toClientPath(folder.lexically_relative(client));
        report.add(Code::unreadableFile, path, "the folder " + path + " cannot be searched");
        snapshot.unread.insert(path == "." ? "" : comparablePath(path));
    }
}

/// The object in a store's file. A store that was never written is an empty one.
std::optional<Json> readStore(const fs::path& file, Code unreadable, const char* what,
                              Report& report) {
    if (file.empty()) {
        report.unseen.push_back(std::string(what) + ": not known of a client's folder alone");
        return std::nullopt;
    }
    std::error_code error;
    if (!fs::exists(file, error)) {
        return Json::object();
    }
    const auto text = readFile(file);
    Json json = text ? parsedJson(*text) : Json(Json::value_t::discarded);
    if (json.is_object()) {
        return json;
    }
    report.add(unreadable, file.filename().string(),
               file.filename().string() + (text ? " holds no JSON object" : " cannot be read"));
    return std::nullopt;
}

/// The JSON in a setting; discarded when there is none.
Json parsedSetting(const Snapshot& snapshot, const char* key) {
    const auto found = snapshot.settings ? snapshot.settings->find(key) : Json::const_iterator();
    if (!snapshot.settings || found == snapshot.settings->end() || !found->is_string()) {
        return Json(Json::value_t::discarded);
    }
    return parsedJson(found->get_ref<const std::string&>());
}

std::optional<std::string> keyOf(const std::optional<std::string>& path) {
    return path ? std::optional(comparablePath(*path)) : std::nullopt;
}

struct ChannelFile {
    int type;
    const char* key;
};

constexpr std::array<ChannelFile, 2> channelFiles{
    {{1000, "patchlib0.dat"}, {1001, "patchlib1.dat"}}};

/// The MD5 that the list of the file channel has for that type.
std::string md5OfType(const Json& list, int type) {
    const Json entries = list.is_object() ? list.value("list", Json()) : Json();
    for (const Json& entry : entries.is_array() ? entries : Json::array()) {
        if (entry.is_object() && entry.value("fileType", Json()) == type) {
            const Json md5 = entry.value("fileMD5", Json());
            return md5.is_string() ? lowered(md5.get<std::string>()) : "";
        }
    }
    return "";
}

} // namespace

void readFiles(Snapshot& snapshot, Report& report) {
    readFolder(snapshot.places.client, snapshot, report);
}

void readStores(Snapshot& snapshot, Report& report) {
    snapshot.versions =
        readStore(snapshot.places.versions, Code::versionsUnreadable, "the version store", report);
    snapshot.settings =
        readStore(snapshot.places.settings, Code::settingsUnreadable, "the settings", report);
}

void readFileList(Snapshot& snapshot, Report& report) {
    const fs::path& file = snapshot.places.fileList;
    std::error_code error;
    if (file.empty()) {
        report.unseen.emplace_back("filelist.xml: not known of a client's folder alone");
        return;
    }
    const fs::path& first = snapshot.places.firstFileList;
    if (!fs::exists(file, error) && !first.empty() && !fs::exists(first, error)) {
        report.unseen.emplace_back("filelist.xml: the run was laid out without it");
        return;
    }
    if (!fs::exists(file, error)) {
        report.add(Code::listMissing, "filelist.xml", "filelist.xml is not there");
        return;
    }
    pugi::xml_document document;
    const auto text = readFile(file);
    if (!text) {
        report.add(Code::listUnreadable, "filelist.xml", "filelist.xml cannot be read");
        return;
    }
    const pugi::xml_parse_result parsed = document.load_buffer(text->data(), text->size());
    const pugi::xml_node list = document.child("Root").child("FileList");
    if (!parsed || list.empty()) {
        report.add(Code::listUnreadable, "filelist.xml",
                   std::string("filelist.xml ") +
                       (parsed ? "has no FileList" : parsed.description()));
        return;
    }
    snapshot.list.emplace();
    for (const pugi::xml_node node : list.children("File")) {
        ListEntry& entry = snapshot.list->emplace_back();
        for (const pugi::xml_attribute attribute : node.attributes()) {
            entry.attributes.emplace(attribute.name(), attribute.value());
        }
    }
}

void readLists(Snapshot& snapshot) {
    const Json list = parsedSetting(snapshot, paddingListSetting);
    if (list.is_object()) {
        for (const auto& [target, value] : list.items()) {
            const std::string file = value.is_string() ? value.get<std::string>() : "";
            const std::string name = file.substr(file.rfind('\\', 0) == 0 ? 1 : 0);
            const auto below = pathBelow(name);
            snapshot.padding.push_back(
                {target, file, keyOf(pathBelow(target)),
                 below ? std::optional(updateFolder + comparablePath(*below)) : std::nullopt});
        }
    }
    const Json names = parsedSetting(snapshot, tempListSetting);
    for (const Json& name : names.is_array() ? names : Json::array()) {
        if (name.is_string()) {
            snapshot.tempNames.insert(comparablePath(name.get<std::string>()));
        }
    }
    const Json files = parsedSetting(snapshot, fileListSetting);
    for (const ChannelFile& file : channelFiles) {
        snapshot.channelFiles[file.key] = md5OfType(files, file.type);
    }
}

} // namespace sandbox::doctor
