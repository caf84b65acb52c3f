#include "sandbox/check/scenarioparts.h"

#include "sandbox/check/targetpath.h"
#include "sandbox/doctor/dottedversion.h"

namespace sandbox::check {
namespace {

using Json = nlohmann::json;

constexpr std::size_t imageParts = 4;

/// A file whose bytes are made: an image has a version of four parts.
void checkFile(const JsonText& scenario, const std::string& pointer, Mistakes& mistakes) {
    const Json& file = scenario.value().at(Json::json_pointer(pointer));
    const std::string version = textAt(file, "version");
    const std::size_t line = scenario.lineOf(memberOf(pointer, "version"));
    if (textAt(file, "kind") == "pe" &&
        (!isDottedVersion(version) || partsOf(version) != imageParts)) {
        mistakes.add(line, "version-form",
                     "a version of a PE file has four parts, not \"" + version + "\"");
    }
    const std::string path = textAt(file, "path");
    if (file.is_object() && file.contains("path") && !refusalOf(path).empty()) {
        mistakes.add(scenario.lineOf(memberOf(pointer, "path")), "path-outside",
                     "no path of the client: \"" + path + "\", " + refusalOf(path));
    }
}

} // namespace

void checkClient(const JsonText& scenario, Mistakes& mistakes) {
    const Json client = objectAt(scenario.value(), "client");
    for (std::size_t i = 0; i < listAt(client, "files").size(); ++i) {
        checkFile(scenario, elementOf("/client/files", i), mistakes);
    }
    const Json held = listAt(client, "held");
    for (std::size_t i = 0; i < held.size(); ++i) {
        for (const char* member : {"file", "by"}) {
            const std::string path = textAt(held[i], member);
            if (!path.empty() && !standingAt(client, path)) {
                mistakes.add(scenario.lineOf(memberOf(elementOf("/client/held", i), member)),
                             "name-unknown", "the client has no file \"" + path + "\"");
            }
        }
    }
}

void checkMaterialFiles(const JsonText& scenario, Mistakes& mistakes) {
    const Json materials = listAt(objectAt(scenario.value(), "platform"), "materials");
    std::map<std::string, std::size_t> names; // with their lines
    for (std::size_t i = 0; i < materials.size(); ++i) {
        const std::string place = elementOf("/platform/materials", i);
        const std::string name = textAt(materials[i], "name");
        const std::size_t line = scenario.lineOf(place);
        const auto [other, isNew] = names.emplace(name, line);
        if (!isNew && !name.empty()) {
            mistakes.add(line, "name-twice",
                         "a material called \"" + name + "\" stands in line " +
                             std::to_string(other->second) + " already");
        }
        if (!objectAt(materials[i], "file").empty()) {
            checkFile(scenario, memberOf(place, "file"), mistakes);
        }
    }
}

Json listAt(const Json& object, const char* member) {
    const Json value = object.is_object() ? object.value(member, Json()) : Json();
    return value.is_array() ? value : Json::array();
}

Json objectAt(const Json& object, const char* member) {
    const Json value = object.is_object() ? object.value(member, Json()) : Json();
    return value.is_object() ? value : Json::object();
}

std::string textAt(const Json& object, const char* member) {
    const Json value = object.is_object() ? object.value(member, Json()) : Json();
    return value.is_string() ? value.get<std::string>() : "";
}

} // namespace sandbox::check
