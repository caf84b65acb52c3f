#include "sandbox/cli/upgradeplan.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "sandbox/cli/scenariopart.h"
#include "sandbox/common/dottedversion.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

/// Its setup gives the client the version resource of that version.
constexpr std::size_t packageParts = 4;

struct TypeName {
    int type;
    const char* name;
};

constexpr std::array<TypeName, 2> typeNames{{{1000, "patchlib0.dat"}, {1001, "patchlib1.dat"}}};

std::string nameOfType(int type) {
    const auto* found = std::find_if(typeNames.begin(), typeNames.end(),
                                     [type](const TypeName& row) { return row.type == type; });
    // A client drops what it does not know, so a file of another type is never fetched.
    return found == typeNames.end() ? std::to_string(type) : found->name;
}

template <class Number>
std::optional<Number> number(const ScenarioPart& part, const char* member) {
    return part.has(member) ? std::optional(part.need<Number>(member)) : std::nullopt;
}

ServedPlan readServed(const ScenarioPart& part) {
    ServedPlan served;
    served.version = part.need<std::string>("version");
    served.md5 = part.text("md5");
    if (part.has("url")) {
        served.url = part.text("url");
    }
    return served;
}

PackagePlan readPackage(const Json& json) {
    const ScenarioPart part(
        "the package", json,
        {"version", "size", "content", "isForce", "announced", "fails", "files", "md5", "url"});
    PackagePlan package;
    package.served = readServed(part);
    if (const std::string& version = package.served.version;
        !isDottedVersion(version) || partsOf(version) != packageParts) {
        throw std::runtime_error("the package: a version of four parts, not \"" + version + "\"");
    }
    package.size = part.need<std::size_t>("size");
    package.announced = number<std::uint64_t>(part, "announced");
    package.content = part.text("content");
    package.isForce = part.get("isForce", false);
    package.fails = part.get("fails", false);
    for (const Json& file : part.list("files")) {
        const ScenarioPart one("a file of the package", file, {"path", "kind", "version", "size"});
        package.files.push_back({one.need<std::string>("path"), readFilePlan(one)});
    }
    return package;
}

ServedFilePlan readServedFile(const Json& json) {
    const ScenarioPart part("a file of the upgrade server", json,
                            {"type", "version", "size", "md5", "url"});
    ServedFilePlan file;
    file.served = readServed(part);
    file.type = part.need<int>("type");
    file.name = nameOfType(file.type);
    file.file.size = part.get("size", file.file.size);
    return file;
}

} // namespace

UpgradePlan readUpgrade(const Json& json) {
    const ScenarioPart part("upgrade", json, {"package", "files"});
    UpgradePlan plan;
    if (part.has("package")) {
        plan.package = readPackage(json.at("package"));
    }
    for (const Json& file : part.list("files")) {
        plan.files.push_back(readServedFile(file));
    }
    return plan;
}

Json upgradeIn(const Json& upgrade, const Json& options) {
    Json changed = upgrade;
    changed.merge_patch(options.value("upgrade", Json::object()));
    return changed;
}

} // namespace sandbox
