#include "sandbox/cli/built.h"

#include <algorithm>
#include <stdexcept>

#include "sandbox/cli/filebytes.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

std::string clientForm(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

std::string fileNameOf(const std::string& clientPath) {
    return clientPath.substr(clientPath.find_last_of('\\') + 1);
}

Bytes packed(const MaterialPlan& plan, std::uint64_t seed, const std::string& path, Bytes file) {
    if (plan.method.empty()) {
        return file;
    }
    std::vector<std::pair<std::string, Bytes>> members;
    for (const MemberPlan& member : plan.members) {
        members.emplace_back(clientForm(member.name),
                             bytesOf(member.file, seed, plan.name + "/" + member.name));
    }
    members.emplace_back(plan.memberName.empty() ? fileNameOf(path) : clientForm(plan.memberName),
                         std::move(file));
    return cabinetOf(plan.method, members);
}

std::map<std::string, std::string> parametersOf(const BuiltMaterial& material) {
    std::map<std::string, std::string> parameters{{"file_path", material.plan.path},
                                                  {"file_md5", material.fileMd5}};
    if (material.plan.method.empty()) {
        parameters["non_cab"] = "1";
    }
    for (const auto& [key, value] : material.plan.parameters) {
        parameters[key] = value;
    }
    return parameters;
}

void describe(BuiltMaterial& material, const Scenario& scenario, const std::string& md5) {
    const MaterialPlan& plan = material.plan;
    OfferedMaterial& offered = material.offered;
    const auto from = scenario.client.versions.find("update\\version.dat");
    offered.name = plan.name;
    offered.id = "/material/" + plan.name;
    offered.moduleId = plan.module;
    offered.baseVersion = from == scenario.client.versions.end() ? "" : from->second;
    offered.version = plan.version;
    offered.fileId = plan.name + "-" + md5.substr(0, 12);
    offered.md5 = plan.md5.empty() ? md5 : plan.md5;
    offered.extends = parametersOf(material);
    material.group = offered.extends["dependent"];
    if (material.group.empty()) {
        offered.extends.erase("dependent");
    }
}

BuiltMaterial build(const Scenario& scenario, const MaterialPlan& plan,
                    const std::filesystem::path& storage) {
    BuiltMaterial material;
    material.plan = plan;
    material.path = clientForm(plan.path);
    Bytes file = bytesOf(plan.file, scenario.seed, plan.name);
    material.fileMd5 = md5Of(file);
    Bytes stored = packed(plan, scenario.seed, material.path, std::move(file));
    stored.resize(std::min(stored.size(), plan.cutTo.value_or(stored.size())));
    material.storedSize = stored.size();
    describe(material, scenario, md5Of(stored));
    writeBytes(storage / material.offered.fileId, stored);
    return material;
}

std::string valueOf(const NamedValues& values, const std::string& name, const std::string& field) {
    const auto thing = values.find(name);
    if (thing == values.end()) {
        throw std::runtime_error("there is no material or file \"" + name + "\"");
    }
    const auto value = thing->second.find(field);
    if (value == thing->second.end()) {
        throw std::runtime_error("\"" + name + "\" has no \"" + field + "\"");
    }
    return value->second;
}

} // namespace

std::vector<BuiltMaterial> buildMaterials(const Scenario& scenario,
                                          const std::filesystem::path& storage,
                                          const std::function<void(std::size_t)>& made) {
    std::vector<BuiltMaterial> materials;
    for (const MaterialPlan& plan : scenario.platform.materials) {
        materials.push_back(build(scenario, plan, storage));
        made(materials.size());
    }
    return materials;
}

NamedValues valuesOf(const std::vector<BuiltMaterial>& materials) {
    NamedValues values;
    for (const BuiltMaterial& material : materials) {
        values[material.plan.name] = {{"md5", material.offered.md5},
                                      {"fileMd5", material.fileMd5},
                                      {"fileId", material.offered.fileId},
                                      {"path", material.path}};
    }
    return values;
}

std::string filledIn(std::string text, const NamedValues& values) {
    for (std::size_t open = 0; (open = text.find('{', open)) != std::string::npos;) {
        const std::size_t close = text.find('}', open);
        const std::size_t dot = text.rfind('.', close);
        if (close == std::string::npos || dot == std::string::npos || dot < open) {
            break;
        }
        const std::string value = valueOf(values, text.substr(open + 1, dot - open - 1),
                                          text.substr(dot + 1, close - dot - 1));
        text.replace(open, close - open + 1, value);
        open += value.size();
    }
    return text;
}

Json filledIn(const Json& json, const NamedValues& values) {
    if (json.is_string()) {
        return filledIn(json.get<std::string>(), values);
    }
    if (json.is_array()) {
        Json filled = Json::array();
        for (const Json& element : json) {
            filled.push_back(filledIn(element, values));
        }
        return filled;
    }
    if (json.is_object()) {
        Json filled = Json::object();
        for (const auto& [key, value] : json.items()) {
            filled[filledIn(key, values)] = filledIn(value, values);
        }
        return filled;
    }
    return json;
}

bool isNamed(const Json& names, const std::string& name) {
    return names == "all" || std::find(names.begin(), names.end(), name) != names.end();
}

Offer offerOf(const Scenario& scenario, const std::vector<BuiltMaterial>& materials,
              const Json& options) {
    const PlatformPlan& platform = scenario.platform;
    Offer offer{
        platform.productId, platform.channelId, platform.version, platform.restartTray, {}, {}};
    const Json offers = options.value("offers", Json("all"));
    for (const BuiltMaterial& material : materials) {
        if (isNamed(offers, material.plan.name)) {
            offer.materials.push_back(material.offered);
        }
    }
    if (!offer.materials.empty()) {
        for (const auto& [id, version] : platform.modules) {
            offer.modules.push_back({id, "", version});
        }
    }
    return offer;
}

ExpectedRun expectedRunOf(const Json& options) {
    const Json asks = options.value("asks", Json::object());
    ExpectedRun run;
    run.channel = asks.value("channel", "tulsar_upgrade_1.0");
    run.version = asks.value("version", "0.0.0.0");
    run.oid = asks.value("oid", run.oid);
    run.id = asks.value("id", run.id);
    run.testSwitch = asks.value("test", false);
    if (options.contains("questions")) {
        const Json& told = options.at("questions");
        run.questions = told.is_array() ? told.get<std::vector<std::size_t>>()
                                        : std::vector{told.get<std::size_t>()};
        run.isExact = true;
    }
    return run;
}

} // namespace sandbox
