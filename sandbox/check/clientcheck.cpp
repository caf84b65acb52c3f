#include "sandbox/check/members.h"
#include "sandbox/check/scenarioparts.h"
#include "sandbox/check/scenarioshape.h"
#include "sandbox/check/targetpath.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/dottedversion.h"

namespace sandbox::check {
namespace {

using Json = nlohmann::json;

constexpr const char* holderKind = "holder";
constexpr const char* pluginModule = "xrefresher.dll";
constexpr const char* pluginFolder = "xnplugins\\";

class ClientCheck {
public:
    ClientCheck(const JsonText& whole, const StandingFiles& known, Mistakes& found)
        : scenario(whole), client(objectAt(whole.value(), "client")), standing(known),
          mistakes(found) {}

    void run() {
        checkVersion();
        checkFiles();
        checkFolders();
        checkHeld();
    }

private:
    void checkVersion() {
        const Json version = client.value("version", Json());
        if (version.is_string() && !isImageVersion(version.get<std::string>())) {
            add("/client/version", "version-form",
                "the client's version has four parts of at most 65535, not " + version.dump());
        }
    }

    void checkFiles() {
        const Json& files = listAt(client, "files");
        for (std::size_t i = 0; i < files.size(); ++i) {
            const std::string place = elementOf("/client/files", i);
            checkMadeFile(scenario, place, mistakes);
            const std::string& path = textAt(files[i], "path");
            const auto first = standing.find(targetKey(path));
            if (!path.empty() && first->second.number != i) {
                const std::string other = elementOf("/client/files", first->second.number);
                add(memberOf(place, "path"), "name-twice",
                    "the file in line " + std::to_string(scenario.lineOf(other)) +
                        " has the path \"" + path + "\" already");
            }
        }
    }

    void checkFolders() {
        const Json& folders = listAt(client, "folders");
        for (std::size_t i = 0; i < folders.size(); ++i) {
            std::string path = folders[i].is_string() ? folders[i].get<std::string>() : "a";
            path.erase(path.find_last_not_of("\\/") + 1);
            if (const std::string why = refusalOf(path); !why.empty()) {
                add(elementOf("/client/folders", i), "path-outside",
                    "no folder of the client: " + folders[i].dump() + ", " + why);
            }
        }
    }

    void checkHeld() {
        const Json& held = listAt(client, "held");
        const std::set<std::string> modules = moduleKeys();
        for (std::size_t i = 0; i < held.size(); ++i) {
            const std::string place = elementOf("/client/held", i);
            const std::string& file = textAt(held[i], "file");
            const std::string key = targetKey(file);
            if (!file.empty() && standing.count(key) == 0 && modules.count(key) == 0) {
                add(memberOf(place, "file"), "name-unknown",
                    "the client has no file \"" + file + "\"");
            }
            checkHolder(scenario, standing, memberOf(place, "by"), textAt(held[i], "by"), mistakes);
        }
    }

    void add(const std::string& place, const char* code, const std::string& text) {
        mistakes.add(scenario.lineOf(place), code, text);
    }

    const JsonText& scenario;
    const Json& client;
    const StandingFiles& standing;
    Mistakes& mistakes;
};

} // namespace

std::set<std::string> moduleKeys() {
    std::set<std::string> keys;
    for (const std::string module : moduleWords()) {
        keys.insert(comparablePath(module == pluginModule ? pluginFolder + module : module));
    }
    return keys;
}

StandingFiles standingIn(const Json& client) {
    std::map<std::string, std::string> stored;
    for (const auto& [path, version] : objectAt(client, "versions").items()) {
        stored[comparablePath(path)] = version.is_string() ? version.get<std::string>() : "";
    }
    StandingFiles standing;
    const Json& files = listAt(client, "files");
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::string& path = textAt(files[i], "path");
        const auto entry = stored.find(comparablePath(path));
        const bool isStored = textAt(files[i], "kind") != "pe" && entry != stored.end();
        standing.emplace(targetKey(path),
                         StandingFile{textAt(files[i], "kind"),
                                      isStored ? entry->second : textAt(files[i], "version"), i});
    }
    return standing;
}

void checkClient(const JsonText& scenario, const StandingFiles& standing, Mistakes& mistakes) {
    ClientCheck(scenario, standing, mistakes).run();
}

void checkHolder(const JsonText& scenario, const StandingFiles& standing,
                 const std::string& pointer, const std::string& by, Mistakes& mistakes) {
    const auto program = standing.find(targetKey(by));
    if (by.empty()) {
        return;
    }
    if (program == standing.end()) {
        mistakes.add(scenario.lineOf(pointer), "name-unknown",
                     "the client has no file \"" + by + "\"");
    } else if (program->second.kind != holderKind) {
        mistakes.add(scenario.lineOf(pointer), "holder-kind",
                     "\"" + by + "\" is of another kind than " + holderKind +
                         ", and keeps no file in use");
    }
}

} // namespace sandbox::check
