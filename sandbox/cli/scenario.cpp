#include "sandbox/cli/scenario.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <set>
#include <stdexcept>

#include "sandbox/check/scenariocheck.h"
#include "sandbox/cli/bulk.h"
#include "sandbox/cli/clientconfig.h"
#include "sandbox/cli/holdings.h"
#include "sandbox/cli/scenariopart.h"
#include "sandbox/cli/set.h"
#include "sandbox/cli/upgradeplan.h"
#include "sandbox/common/jsondepth.h"
#include "sandbox/server/storage.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

ClientPlan readClient(const Json& json) {
    const ScenarioPart part("client", json,
                            {"version", "versions", "files", "folders", "held", "fileListEntries",
                             "leaveOut", "background", "config", "settings", "testIni"});
    ClientPlan client;
    client.version = part.need<std::string>("version");
    client.versions = part.get("versions", client.versions);
    for (const Json& file : part.list("files")) {
        const ScenarioPart one("a file of the client", file, {"path", "kind", "version", "size"});
        client.files.push_back({one.need<std::string>("path"), readFilePlan(one)});
    }
    for (const Json& held : part.list("held")) {
        const ScenarioPart one("a held file", held, {"file", "by"});
        client.held.push_back({one.need<std::string>("file"), one.need<std::string>("by")});
    }
    client.folders = part.get("folders", client.folders);
    client.fileListEntries = part.get("fileListEntries", client.fileListEntries);
    client.leaveOut = part.get("leaveOut", client.leaveOut);
    client.background = part.get("background", client.background);
    client.testIni = part.text("testIni");
    client.config = part.object("config");
    checkConfig(client.config);
    client.settings = part.object("settings");
    return client;
}

void readCabinet(const Json& json, MaterialPlan& material) {
    const ScenarioPart part("cabinet of " + material.name, json, {"method", "with", "as"});
    material.method = part.need<std::string>("method");
    material.memberName = part.text("as");
    for (const Json& member : part.list("with")) {
        const ScenarioPart one("a member of the cabinet of " + material.name, member,
                               {"name", "kind", "version", "size"});
        material.members.push_back({one.need<std::string>("name"), readFilePlan(one)});
    }
}

MaterialPlan readMaterial(const Json& json) {
    const ScenarioPart part(
        "material " + json.value("name", ""), json,
        {"name", "version", "path", "file", "module", "cabinet", "parameters", "md5", "cutTo"});
    MaterialPlan material;
    material.name = part.need<std::string>("name");
    if (!isPlainName(material.name)) {
        throw std::runtime_error("the material's name is no plain name: " + material.name);
    }
    if (fixedPlaceOf(material.name)) {
        throw std::runtime_error("the material's name has another meaning in faults: " +
                                 material.name);
    }
    material.module = part.text("module", "/components");
    material.version = part.need<std::string>("version");
    material.path = part.need<std::string>("path");
    material.file = readFilePlan(ScenarioPart("file of " + material.name, part.need<Json>("file"),
                                              {"kind", "version", "size"}));
    if (part.has("cabinet")) {
        readCabinet(json.at("cabinet"), material);
    }
    material.parameters = part.get("parameters", material.parameters);
    material.md5 = part.text("md5");
    if (part.has("cutTo")) {
        material.cutTo = part.need<std::size_t>("cutTo");
    }
    return material;
}

PlatformPlan readPlatform(const Json& json) {
    const ScenarioPart part(
        "platform", json,
        {"version", "productId", "channelId", "restartTray", "modules", "materials", "bulk"});
    PlatformPlan platform;
    platform.productId = part.get("productId", platform.productId);
    platform.channelId = part.get("channelId", platform.channelId);
    platform.version = part.need<std::string>("version");
    platform.restartTray = part.text("restartTray");
    platform.modules = part.get("modules", platform.modules);
    for (const Json& material : part.list("materials")) {
        platform.materials.push_back(readMaterial(material));
    }
    if (part.has("bulk")) {
        appendBulk(json.at("bulk"), platform.materials);
    }
    return platform;
}

void checkExpectation(const std::string& where, const Json& json) {
    const ScenarioPart expect(
        where + "expect", json,
        {"materials",     "downloads",        "programs",   "notifications", "versions",
         "versionsOf",    "fileList",         "settings",   "update",        "delayed",
         "logs",          "hostExit",         "events",     "record",        "background",
         "packageChecks", "packageDownloads", "fileChecks", "fileDownloads", "contents",
         "fileVersions",  "reports",          "failures",   "client",        "anything"});
    checkMembers(where + "fileList", expect.object("fileList"), {"entries", "of", "versionFile"});
    checkMembers(where + "delayed", expect.object("delayed"), {"replaces", "deletes"});
}

/// What stands in a phase is read when its turn comes; here only that it can be meant.
Phase readPhase(const Json& json) {
    const ScenarioPart part("a phase", json,
                            {"do", "title", "expect", "asks", "offers", "questions", "faults",
                             "host", "ui", "upgrade", "set"});
    const std::string kind = part.need<std::string>("do");
    if (kind != "run" && kind != "restart") {
        throw std::runtime_error("\"do\" is neither \"run\" nor \"restart\": " + kind);
    }
    Phase phase{kind == "restart",     part.text("title", kind.c_str()), json,
                part.object("expect"), readScript(part.list("ui")),      {}};
    const std::string where = "phase \"" + phase.title + "\", ";
    checkExpectation(where, phase.expect);
    checkSet(part.object("set"));
    checkMembers(where + "asks", part.object("asks"),
                 {"channel", "version", "oid", "id", "test", "phone", "token", "clientVersion",
                  "osVersion", "files"});
    return phase;
}

std::set<std::string> namesOf(const PlatformPlan& platform) {
    std::set<std::string> names;
    for (const MaterialPlan& material : platform.materials) {
        names.insert(material.name);
    }
    return names;
}

/// A list that names a material which is not there would only expect less.
void checkNames(const Scenario& scenario, const Json& names, const std::string& what) {
    for (const Json& name : names.is_array() ? names : Json::array()) {
        const auto& materials = scenario.platform.materials;
        if (std::none_of(materials.begin(), materials.end(),
                         [&](const MaterialPlan& material) { return name == material.name; })) {
            throw std::runtime_error(what + ": there is no material " + name.dump());
        }
    }
}

Scenario readParsed(const Json& json) {
    const ScenarioPart part("the scenario", json,
                            {"title", "seed", "client", "platform", "upgrade", "phases"});
    Scenario scenario;
    scenario.title = part.text("title");
    scenario.seed = part.get("seed", scenario.seed);
    scenario.client = readClient(part.need<Json>("client"));
    if (part.has("platform")) {
        scenario.platform = readPlatform(json.at("platform"));
    }
    scenario.upgrade = part.object("upgrade");
    for (const Json& step : part.need<std::vector<Json>>("phases")) {
        scenario.phases.push_back(readPhase(step));
        Phase& phase = scenario.phases.back();
        phase.faults =
            readFaults(phase.options.value("faults", Json::array()), namesOf(scenario.platform));
        if (phase.isRestart && !phase.faults.empty()) {
            throw std::runtime_error("phase \"" + phase.title + "\": a restart has no faults");
        }
        readUpgrade(upgradeIn(scenario.upgrade, phase.options));
        const Json fileList = phase.expect.value("fileList", Json::object());
        checkNames(scenario, phase.options.value("offers", Json()), "offers");
        checkNames(scenario, phase.expect.value("versionsOf", Json()), "versionsOf");
        checkNames(scenario, fileList.value("of", Json()), "fileList, of");
    }
    checkHoldings(scenario);
    return scenario;
}

/// What reads the values of a text goes down with its levels.
void checkDepth(const std::string& text) {
    if (const auto line = lineTooDeep(text)) {
        throw std::runtime_error("line " + std::to_string(*line) + ": " + tooDeep);
    }
}

/// Much is read when its turn comes only; what could not be meant is told before a step is done.
void checkForm(const std::string& text) {
    const std::vector<check::Mistake> mistakes = check::checkFormat(text, "");
    if (!mistakes.empty()) {
        throw std::runtime_error("line " + std::to_string(mistakes.front().line) + ": " +
                                 mistakes.front().text);
    }
}

/// What went wrong, without the JSON library's number in front.
std::string reasonOf(const std::exception& error) {
    const std::string text = error.what();
    const std::size_t end = text.rfind("[json.exception", 0) == 0 ? text.find("] ") : text.npos;
    return end == text.npos ? text : text.substr(end + 2);
}

} // namespace

FilePlan readFilePlan(const ScenarioPart& part) {
    FilePlan file;
    file.kind = part.get("kind", file.kind);
    file.version = part.get("version", file.version);
    file.size = part.get("size", file.size);
    return file;
}

Scenario readScenario(const std::filesystem::path& file) {
    std::ifstream stream(file);
    if (!stream || std::filesystem::is_directory(file)) {
        throw std::runtime_error(file.string() + ": no such scenario");
    }
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    try {
        checkDepth(text);
        Scenario scenario = readParsed(Json::parse(text));
        checkForm(text);
        return scenario;
    } catch (const std::exception& error) {
        throw std::runtime_error(file.string() + ": " + reasonOf(error));
    }
}

} // namespace sandbox
