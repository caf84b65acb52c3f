#include "sandbox/common/config.h"

#include "sandbox/common/events.h"
#include "sandbox/common/folders.h"
#include "sandbox/common/jsonfile.h"

namespace sandbox {

namespace {

template <class T>
void take(const nlohmann::json& json, const char* name, T& member) {
    if (const auto found = json.find(name); found != json.end()) {
        found->get_to(member);
    }
}

void take(const nlohmann::json& json, const char* name, std::optional<std::string>& member) {
    if (const auto found = json.find(name); found != json.end() && !found->is_null()) {
        member = found->get<std::string>();
    }
}

void put(nlohmann::json& json, const char* name, const std::optional<std::string>& member) {
    if (member) {
        json[name] = *member;
    }
}

} // namespace

static void from_json(const nlohmann::json& json, Config::Os& os) {
    take(json, "major", os.major);
    take(json, "minor", os.minor);
    take(json, "build", os.build);
}

static void from_json(const nlohmann::json& json, Config::Login& login) {
    take(json, "token", login.token);
    take(json, "device", login.device);
    take(json, "service", login.service);
    take(json, "identity", login.identity);
    take(json, "tokenText", login.tokenText);
    take(json, "phone", login.phone);
}

void from_json(const nlohmann::json& json, Config& config) {
    take(json, "serverAddress", config.serverAddress);
    take(json, "upgradeAddress", config.upgradeAddress);
    take(json, "homeDirectory", config.homeDirectory);
    take(json, "httpTimeoutMs", config.httpTimeoutMs);
    take(json, "os", config.os);
    take(json, "login", config.login);
    take(json, "muteMode", config.muteMode);
    take(json, "channelType", config.channelType);
    take(json, "instances", config.instances);
    take(json, "absentIds", config.absentIds);
    take(json, "badSignature", config.badSignature);
}

void to_json(nlohmann::json& json, const Config& config) {
    const auto& [token, device, service, identity, tokenText, phone] = config.login;
    json = {{"homeDirectory", config.homeDirectory},
            {"httpTimeoutMs", config.httpTimeoutMs},
            {"os",
             {{"major", config.os.major}, {"minor", config.os.minor}, {"build", config.os.build}}},
            {"login",
             {{"token", token},
              {"device", device},
              {"service", service},
              {"identity", identity},
              {"tokenText", tokenText},
              {"phone", phone}}},
            {"muteMode", config.muteMode},
            {"channelType", config.channelType},
            {"instances", config.instances},
            {"absentIds", config.absentIds},
            {"badSignature", config.badSignature}};
    put(json, "serverAddress", config.serverAddress);
    put(json, "upgradeAddress", config.upgradeAddress);
}

Config readConfig() {
    const std::filesystem::path file = processFolders().config();
    if (!std::filesystem::exists(file)) {
        return {};
    }
    Config config;
    guarded("config.json", [&] {
        const auto json = readJson(file);
        if (!json) {
            throw std::runtime_error("no JSON");
        }
        config = json->get<Config>();
    });
    return config;
}

const Config& processConfig() {
    static const Config& config = *new Config(readConfig());
    return config;
}

} // namespace sandbox
