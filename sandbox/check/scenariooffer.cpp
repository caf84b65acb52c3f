#include <algorithm>

#include "sandbox/check/members.h"
#include "sandbox/check/scenarioparts.h"
#include "sandbox/check/targetpath.h"
#include "sandbox/common/clientpath.h"

namespace sandbox::check {
namespace {

using Json = nlohmann::json;

constexpr const char* updateFolder = "update\\";
constexpr const char* oldFiles = "temp"; ///< the updater makes it in there by itself

/// One material of the scenario.
class MaterialReader {
public:
    MaterialReader(const JsonText& whole, std::string place)
        : scenario(whole), pointer(std::move(place)),
          json(whole.value().at(Json::json_pointer(pointer))) {}

    Material read(const HashesOf& hashesOf) {
        Material material;
        material.name = textAt(json, "name");
        material.line = scenario.lineOf(pointer);
        material.path = when("path");
        material.version = when("version");
        material.module = Located{textAt(json, "module"), lineOf("module")};
        if (material.module->text.empty()) {
            material.module->text = "/components";
        }
        readParameters(material);
        readFile(material);
        readCabinet(material);
        material.md5 = when("md5");
        const bool byHand = material.md5 || material.parameters.count("file_md5") != 0;
        if (const auto hashes = byHand && hashesOf ? hashesOf(material.name) : std::nullopt) {
            material.storedMd5 = hashes->stored;
            material.contentMd5 = hashes->content;
        }
        return material;
    }

private:
    std::size_t lineOf(const char* member) const {
        return scenario.lineOf(memberOf(pointer, member));
    }

    /// A text that is there.
    std::optional<Located> when(const char* member) const {
        return json.contains(member) && json.at(member).is_string()
                   ? std::optional(Located{textAt(json, member), lineOf(member)})
                   : std::nullopt;
    }

    void readParameters(Material& material) const {
        const Json& parameters = objectAt(json, "parameters");
        const std::string place = memberOf(pointer, "parameters");
        for (const auto& [key, value] : parameters.items()) {
            if (value.is_string()) {
                material.parameters[key] = {value.get<std::string>(),
                                            scenario.lineOf(memberOf(place, key))};
            }
        }
        if (material.parameters.count("file_path") != 0) {
            material.path = material.parameters.at("file_path");
        }
    }

    void readFile(Material& material) const {
        const Json& file = objectAt(json, "file");
        const std::string place = memberOf(pointer, "file");
        material.fileVersion = textAt(file, "kind") == "pe" ? textAt(file, "version") : "";
        const Json size = file.value("size", Json(0));
        material.size = {size.is_number_unsigned() ? size.dump() : "0",
                         scenario.lineOf(memberOf(place, "size"))};
    }

    void readCabinet(Material& material) const {
        const Json& cabinet = objectAt(json, "cabinet");
        const std::string place = memberOf(pointer, "cabinet");
        material.isCabinet = json.contains("cabinet");
        if (!material.isCabinet) {
            return;
        }
        // The file itself is called as the target is, whatever is sent as the target.
        const std::string own = textAt(cabinet, "as");
        material.members.push_back(
            {own.empty() ? comparablePath(leafOf(textAt(json, "path"))) : own,
             scenario.lineOf(memberOf(place, "as"))});
        const Json& others = listAt(cabinet, "with");
        for (std::size_t i = 0; i < others.size(); ++i) {
            const std::string member = elementOf(memberOf(place, "with"), i);
            material.members.push_back({textAt(others[i], "name"), scenario.lineOf(member)});
        }
    }

    const JsonText& scenario;
    std::string pointer;
    const Json& json;
};

void addPrograms(const Json& client, Offered& offered) {
    for (const Json& file : listAt(client, "files")) {
        offered.programs.insert(comparablePath(leafOf(textAt(file, "path"))));
    }
    for (const Material& material : offered.materials) {
        offered.programs.insert(comparablePath(leafOf(material.target())));
    }
}

void addFolders(const Json& client, Offered& offered) {
    const auto add = [&](const std::string& path) {
        std::string key = targetKey(path);
        while (key.rfind(updateFolder, 0) == 0) { // with the folders that it lies in
            offered.updateFolders->insert(key.substr(std::string(updateFolder).size()));
            key.erase(key.find_last_of('\\'));
        }
    };
    offered.updateFolders.emplace({std::string(oldFiles)});
    for (const Json& folder : listAt(client, "folders")) {
        add(folder.is_string() ? folder.get<std::string>() : "");
    }
    for (const Json& file : listAt(client, "files")) {
        const std::string path = targetKey(textAt(file, "path"));
        add(path.substr(0, std::min(path.find_last_of('\\'), path.size())));
    }
}

} // namespace

Offered offeredIn(const JsonText& scenario, const HashesOf& hashesOf) {
    Offered offered;
    const Json& client = objectAt(scenario.value(), "client");
    const Json& platform = objectAt(scenario.value(), "platform");
    const Json& materials = listAt(platform, "materials");
    const StandingFiles standing = standingIn(client);
    for (std::size_t i = 0; i < materials.size(); ++i) {
        if (materials[i].is_object()) {
            MaterialReader reader(scenario, elementOf("/platform/materials", i));
            Material material = reader.read(hashesOf);
            const auto stands = standing.find(targetKey(material.target()));
            material.standing =
                stands == standing.end() ? std::nullopt : std::optional(stands->second.version);
            offered.materials.push_back(std::move(material));
        }
    }
    if (platform.contains("version")) {
        offered.version =
            Located{textAt(platform, "version"), scenario.lineOf("/platform/version")};
    }
    offered.modules.emplace();
    const Json& modules = objectAt(platform, "modules");
    for (const auto& [id, version] : modules.items()) {
        (*offered.modules)[id] = {version.is_string() ? version.get<std::string>() : "", 1};
    }
    addPrograms(client, offered);
    addFolders(client, offered);
    return offered;
}

} // namespace sandbox::check
