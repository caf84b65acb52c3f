#include "sandbox/report/plannedmaterials.h"

#include <algorithm>

#include "sandbox/common/clientpath.h"

namespace sandbox::report {
namespace {

using Json = nlohmann::json;

/// A member that is an object; an empty one for anything else.
Json objectOf(const Json& object, const char* member) {
    const auto found = object.find(member);
    return found != object.end() && found->is_object() ? *found : Json::object();
}

Json listOf(const Json& object, const char* member) {
    Json list = Json::array();
    const auto found = object.find(member);
    if (found != object.end() && found->is_array()) {
        std::copy_if(found->begin(), found->end(), std::back_inserter(list),
                     [](const Json& item) { return item.is_object(); });
    }
    return list;
}

std::string withBackslashes(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

Planned plannedOf(const Json& material) {
    Planned planned;
    planned.name = textOf(material, "name");
    planned.path = withBackslashes(textOf(material, "path"));
    planned.module = textOf(material, "module");
    planned.version = textOf(material, "version");
    planned.md5 = textOf(material, "md5");
    const Json parameters = objectOf(material, "parameters");
    if (const std::string instead = textOf(parameters, "file_path"); !instead.empty()) {
        planned.path = withBackslashes(instead);
    }
    planned.group = textOf(parameters, "dependent");
    planned.osver = textOf(parameters, "osver");
    planned.checkApp = textOf(parameters, "check_app");
    planned.checkSys = textOf(parameters, "check_sys");
    planned.exec = textOf(parameters, "exec");
    const Json file = objectOf(material, "file");
    planned.fileVersion = textOf(file, "kind") == "pe" ? textOf(file, "version") : "";
    return planned;
}

} // namespace

std::string textOf(const Json& object, const char* member) {
    const auto found = object.find(member);
    return found != object.end() && found->is_string() ? found->get<std::string>() : "";
}

std::string trimmedEnd(const std::string& text) {
    const std::size_t end = text.find_last_not_of(" \r\n\t");
    return text.substr(0, end == std::string::npos ? 0 : end + 1);
}

void takeScenario(const Json& scenario, Knowledge& known) {
    for (const Json& material : listOf(objectOf(scenario, "platform"), "materials")) {
        const Planned planned = plannedOf(material);
        known.materials[planned.name] = planned;
    }
    const Json client = objectOf(scenario, "client");
    known.clientVersion = textOf(client, "version");
    for (const Json& file : listOf(client, "files")) {
        const std::string path = comparablePath(textOf(file, "path"));
        const bool isPe = textOf(file, "kind") == "pe";
        const std::string version = textOf(file, "version");
        known.files[path] = {isPe, isPe ? version : ""};
        if (!isPe && !version.empty()) {
            known.versions[path] = version;
        }
    }
    // What the scenario tells of the store goes before the versions of its files.
    const Json versions = objectOf(client, "versions");
    for (const auto& [path, version] : versions.items()) {
        if (version.is_string()) {
            known.versions[comparablePath(path)] = version.get<std::string>();
        }
    }
    const Json package = objectOf(objectOf(scenario, "upgrade"), "package");
    for (const Json& file : listOf(package, "files")) {
        known.ofPackage.push_back(comparablePath(textOf(file, "path")));
    }
}

} // namespace sandbox::report
