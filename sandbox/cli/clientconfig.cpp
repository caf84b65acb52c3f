#include "sandbox/cli/clientconfig.h"

#include <cstdint>
#include <limits>
#include <stdexcept>

#include "sandbox/cli/scenariopart.h"
#include "sandbox/cli/setnames.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr const char* configName = "client, config";

void checkWord(const std::string& part, const Json& object, const char* member) {
    const Json number = object.value(member, Json(0U));
    if (!number.is_number_unsigned() ||
        number.get<std::uint64_t>() > std::numeric_limits<std::uint32_t>::max()) {
        throw std::runtime_error(part + ": \"" + member + "\" is a number of 32 bits, not " +
                                 number.dump());
    }
}

void checkAddress(const Json& config, const char* member) {
    const Json address = config.value(member, Json());
    if (!address.is_null() && !address.is_string()) {
        throw std::runtime_error(std::string(configName) + ": \"" + member +
                                 "\" is a text or null, not " + address.dump());
    }
}

} // namespace

void checkConfig(const Json& config) {
    // The home directory is none of them: a run writes below its own folder only.
    const ScenarioPart part(configName, config,
                            {"serverAddress", "upgradeAddress", "httpTimeoutMs", "os", "login",
                             "muteMode", "channelType", "instances", "absentIds", "badSignature"});
    checkAddress(config, "serverAddress");
    checkAddress(config, "upgradeAddress");
    checkWord(configName, config, "httpTimeoutMs");
    const std::string osName = std::string(configName) + ", os";
    const Json system = part.object("os");
    checkMembers(osName, system, {"major", "minor", "build"});
    for (const char* member : {"major", "minor", "build"}) {
        checkWord(osName, system, member);
    }
    part.get("muteMode", 0);
    part.text("channelType");
    for (const char* list : {"instances", "absentIds", "badSignature"}) {
        part.get(list, std::vector<std::string>());
    }
    try {
        checkLogin(part.object("login"));
    } catch (const std::runtime_error& error) {
        throw std::runtime_error(std::string(configName) + ", " + error.what());
    }
}

} // namespace sandbox
