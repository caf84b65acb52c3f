#include "sandbox/check/scenarioparts.h"

#include <cstdint>

#include "sandbox/check/members.h"
#include "sandbox/check/targetpath.h"
#include "sandbox/common/dottedversion.h"
#include "sandbox/faults/faultkind.h"

namespace sandbox::check {
namespace {

using Json = nlohmann::json;

constexpr std::uint64_t mostInBulk = 100000;

/// Why a material cannot be called so; empty when it can.
std::string nameRefusal(const std::string& name) {
    if (name.empty() || name == "." || name == ".." ||
        name.find_first_of("/\\:") != std::string::npos) {
        return "\"" + name + "\" is no plain name, and files are called after it";
    }
    if (fixedPlaceOf(name) || name == "*") {
        return "\"" + name + "\" means something else in faults and expectations";
    }
    return "";
}

void checkPacked(const JsonText& scenario, const std::string& material, const Json& members,
                 Mistakes& mistakes) {
    for (std::size_t i = 0; i < members.size(); ++i) {
        checkMadeFile(scenario, elementOf(memberOf(memberOf(material, "cabinet"), "with"), i),
                      mistakes);
    }
}

/// The rule makes a material for each number up to `count`.
void checkBulk(const JsonText& scenario, const Json& bulk, Mistakes& mistakes) {
    const auto number = [&](const char* member) {
        const Json value = bulk.value(member, Json());
        return value.is_number_unsigned() ? value.get<std::uint64_t>() : 0;
    };
    const auto add = [&](const char* member, const std::string& text) {
        mistakes.add(scenario.lineOf(memberOf("/platform/bulk", member)), "value-range", text);
    };
    if (number("count") > mostInBulk) {
        add("count", "bulk makes at most " + std::to_string(mostInBulk) + " materials");
    }
    if (number("maxSize") < number("minSize")) {
        add("maxSize", "\"maxSize\" is below \"minSize\"");
    }
    if (bulk.value("methods", Json()) == Json::array()) {
        add("methods", "\"methods\" names no method of a cabinet");
    }
}

} // namespace

void checkMadeFile(const JsonText& scenario, const std::string& pointer, Mistakes& mistakes) {
    const Json& file = scenario.value().at(Json::json_pointer(pointer));
    const std::string& version = textAt(file, "version");
    if (textAt(file, "kind") == "pe" && !isImageVersion(version)) {
        mistakes.add(scenario.lineOf(memberOf(pointer, "version")), "version-form",
                     "a version of a PE file has four parts of at most 65535, not \"" + version +
                         "\"");
    }
    const Json path = file.is_object() ? file.value("path", Json()) : Json();
    const std::string why = path.is_string() ? refusalOf(path.get<std::string>()) : "";
    if (!why.empty()) {
        mistakes.add(scenario.lineOf(memberOf(pointer, "path")), "path-outside",
                     "no path of the client: " + path.dump() + ", " + why);
    }
}

void checkMaterialFiles(const JsonText& scenario, Mistakes& mistakes) {
    const Json& platform = objectAt(scenario.value(), "platform");
    if (platform.contains("bulk")) {
        checkBulk(scenario, objectAt(platform, "bulk"), mistakes);
    }
    const Json& materials = listAt(platform, "materials");
    std::map<std::string, std::size_t> names; // with their lines
    for (std::size_t i = 0; i < materials.size(); ++i) {
        const std::string place = elementOf("/platform/materials", i);
        const std::string& name = textAt(materials[i], "name");
        const std::size_t line = scenario.lineOf(place);
        const auto [other, isNew] = names.emplace(name, line);
        const bool isNamed =
            materials[i].is_object() && materials[i].value("name", Json()).is_string();
        if (isNamed && !nameRefusal(name).empty()) {
            mistakes.add(scenario.lineOf(memberOf(place, "name")), "name-form", nameRefusal(name));
        } else if (isNamed && !isNew) {
            mistakes.add(line, "name-twice",
                         "a material called \"" + name + "\" stands in line " +
                             std::to_string(other->second) + " already");
        }
        if (!objectAt(materials[i], "file").empty()) {
            checkMadeFile(scenario, memberOf(place, "file"), mistakes);
        }
        checkPacked(scenario, place, listAt(objectAt(materials[i], "cabinet"), "with"), mistakes);
    }
}

} // namespace sandbox::check
