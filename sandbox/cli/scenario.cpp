#include "sandbox/cli/scenario.h"

#include <fstream>
#include <stdexcept>

#include "sandbox/cli/bulk.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

FileSpec readFile(const Json& json) {
    FileSpec file;
    file.kind = json.value("kind", file.kind);
    file.version = json.value("version", file.version);
    file.size = json.value("size", file.size);
    return file;
}

ClientFile readClientFile(const Json& json) {
    return {json.at("path").get<std::string>(), readFile(json)};
}

ClientSpec readClient(const Json& json) {
    ClientSpec client;
    client.version = json.at("version").get<std::string>();
    client.versions = json.value("versions", client.versions);
    for (const Json& file : json.value("files", Json::array())) {
        client.files.push_back(readClientFile(file));
    }
    for (const Json& held : json.value("held", Json::array())) {
        client.held.push_back(
            {held.at("file").get<std::string>(), held.at("by").get<std::string>()});
    }
    client.folders = json.value("folders", client.folders);
    client.fileListEntries = json.value("fileListEntries", client.fileListEntries);
    client.leaveOut = json.value("leaveOut", client.leaveOut);
    client.background = json.value("background", client.background);
    client.testIni = json.value("testIni", client.testIni);
    client.config = json.value("config", client.config);
    client.settings = json.value("settings", client.settings);
    return client;
}

void readCabinet(const Json& json, MaterialSpec& material) {
    material.method = json.at("method").get<std::string>();
    material.memberName = json.value("as", "");
    for (const Json& member : json.value("with", Json::array())) {
        material.members.push_back({member.at("name").get<std::string>(), readFile(member)});
    }
}

MaterialSpec readMaterial(const Json& json) {
    MaterialSpec material;
    material.name = json.at("name").get<std::string>();
    material.module = json.value("module", "/components");
    material.version = json.at("version").get<std::string>();
    material.path = json.at("path").get<std::string>();
    material.file = readFile(json.at("file"));
    if (json.contains("cabinet")) {
        readCabinet(json.at("cabinet"), material);
    }
    material.parameters = json.value("parameters", material.parameters);
    material.md5 = json.value("md5", "");
    if (json.contains("cutTo")) {
        material.cutTo = json.at("cutTo").get<std::size_t>();
    }
    return material;
}

PlatformSpec readPlatform(const Json& json) {
    PlatformSpec platform;
    platform.productId = json.value("productId", "tulsar");
    platform.channelId = json.value("channelId", "tulsar_upgrade_1.0");
    platform.version = json.at("version").get<std::string>();
    platform.restartTray = json.value("restartTray", "");
    platform.modules = json.value("modules", platform.modules);
    for (const Json& material : json.value("materials", Json::array())) {
        platform.materials.push_back(readMaterial(material));
    }
    if (json.contains("bulk")) {
        appendBulk(json.at("bulk"), platform.materials);
    }
    return platform;
}

Phase readPhase(const Json& json) {
    const std::string kind = json.at("do").get<std::string>();
    if (kind != "run" && kind != "restart") {
        throw std::runtime_error("\"do\" is neither \"run\" nor \"restart\": " + kind);
    }
    return {kind == "restart", json.value("title", kind), json,
            json.value("expect", Json::object())};
}

Scenario readParsed(const Json& json) {
    Scenario scenario;
    scenario.title = json.value("title", "");
    scenario.seed = json.value("seed", scenario.seed);
    scenario.client = readClient(json.at("client"));
    scenario.platform = readPlatform(json.at("platform"));
    for (const Json& phase : json.at("phases")) {
        scenario.phases.push_back(readPhase(phase));
    }
    return scenario;
}

} // namespace

Scenario readScenario(const std::filesystem::path& file) {
    std::ifstream stream(file);
    if (!stream) {
        throw std::runtime_error(file.string() + ": no such scenario");
    }
    try {
        return readParsed(Json::parse(stream));
    } catch (const std::exception& error) {
        throw std::runtime_error(file.string() + ": " + error.what());
    }
}

} // namespace sandbox
