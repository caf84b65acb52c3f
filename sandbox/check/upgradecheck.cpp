#include <array>

#include "sandbox/check/members.h"
#include "sandbox/check/scenarioparts.h"
#include "sandbox/common/dottedversion.h"

namespace sandbox::check {
namespace {

using Json = nlohmann::json;

constexpr const char* neededOfPackage[]{"version", "size"};

struct TypeName {
    int type;
    const char* name;
};

constexpr std::array<TypeName, 2> dataFiles{{{1000, "patchlib0.dat"}, {1001, "patchlib1.dat"}}};

/// The places of all objects `upgrade`: the scenario's, and the changes of its runs.
std::vector<std::string> upgradesIn(const Json& scenario) {
    std::vector<std::string> places{"/upgrade"};
    for (std::size_t i = 0; i < listAt(scenario, "phases").size(); ++i) {
        places.push_back(memberOf(elementOf("/phases", i), "upgrade"));
    }
    return places;
}

/// The object at a place, or an empty one.
const Json& upgradeAt(const Json& scenario, const std::string& place) {
    static const Json none = Json::object();
    const Json::json_pointer pointer(place);
    return scenario.contains(pointer) && scenario.at(pointer).is_object() ? scenario.at(pointer)
                                                                          : none;
}

void checkPackage(const JsonText& scenario, const std::string& place, const Json& package,
                  Mistakes& mistakes) {
    const Json version = package.value("version", Json());
    if (version.is_string() && !isImageVersion(version.get<std::string>())) {
        mistakes.add(scenario.lineOf(memberOf(place, "version")), "version-form",
                     "the package's version has four parts of at most 65535, not " +
                         version.dump());
    }
    for (std::size_t i = 0; i < listAt(package, "files").size(); ++i) {
        checkMadeFile(scenario, elementOf(memberOf(place, "files"), i), mistakes);
    }
}

/// A change that makes a package out of nothing has to make a whole one.
void checkWhole(const JsonText& scenario, const std::string& place, const Json& package,
                Mistakes& mistakes) {
    const bool isChange = !objectAt(upgradeAt(scenario.value(), "/upgrade"), "package").empty();
    std::string missing;
    for (const char* member : neededOfPackage) {
        if (!package.contains(member)) {
            missing += (missing.empty() ? "" : ", ") + std::string(member);
        }
    }
    if (!isChange && !package.empty() && !missing.empty()) {
        mistakes.add(scenario.lineOf(place), "member-missing",
                     "the scenario has no package that is changed here, and a new one needs " +
                         missing);
    }
}

std::string nameOf(const Json& file) {
    const Json type = file.is_object() ? file.value("type", Json()) : Json();
    for (const TypeName& row : dataFiles) {
        if (type == row.type) {
            return row.name;
        }
    }
    return type.dump();
}

} // namespace

void checkUpgrades(const JsonText& scenario, Mistakes& mistakes) {
    for (const std::string& place : upgradesIn(scenario.value())) {
        const Json& package = objectAt(upgradeAt(scenario.value(), place), "package");
        checkPackage(scenario, memberOf(place, "package"), package, mistakes);
        checkWhole(scenario, memberOf(place, "package"), package, mistakes);
    }
}

NamedFields namedFieldsIn(const JsonText& scenario) {
    NamedFields fields;
    const Json& platform = objectAt(scenario.value(), "platform");
    for (const Json& material : listAt(platform, "materials")) {
        fields[textAt(material, "name")] = {"md5", "fileMd5", "fileId", "path"};
    }
    const std::set<std::string> served{"md5", "url", "size"};
    for (const std::string& place : upgradesIn(scenario.value())) {
        const Json& upgrade = upgradeAt(scenario.value(), place);
        if (!objectAt(upgrade, "package").empty()) {
            fields["package"] = served;
        }
        for (const Json& file : listAt(upgrade, "files")) {
            fields[nameOf(file)] = served;
        }
    }
    return fields;
}

} // namespace sandbox::check
