#include "soak/scenario.h"

#include "soak/supply.h"

namespace soak {
namespace {

using Json = nlohmann::json;

Json clientJson(const std::string& address) {
    const auto imageAt = [](const char* path) {
        return Json{{"path", path}, {"kind", "pe"}, {"version", firstPacket}, {"size", 8192}};
    };
    return {{"version", firstClient},
            {"versions", {{"update\\version.dat", firstPacket}, {"data\\base.dat", firstPacket}}},
            {"files", Json::array({imageAt("engine\\core.dll"),
                                   imageAt("pair\\first.dll"),
                                   imageAt("pair\\second.dll"),
                                   imageAt("held.dll"),
                                   {{"path", "data\\base.dat"}, {"size", 1000}},
                                   {{"path", "service.exe"}, {"kind", "holder"}},
                                   {{"path", "keeper.exe"}, {"kind", "holder"}},
                                   {{"path", "helper.exe"}, {"kind", "program"}},
                                   {{"path", "orvdefender.exe"}, {"kind", "program"}}})},
            {"held", Json::array({{{"file", "held.dll"}, {"by", "service.exe"}}})},
            {"fileListEntries", 200},
            {"config",
             {{"serverAddress", address},
              {"upgradeAddress", address},
              {"httpTimeoutMs", 1000},
              {"login", {{"tokenText", "token-50"}, {"phone", "13800000050"}}}}}};
}

} // namespace

Json scenarioOf(const std::string& address) {
    return {{"title", "A client for a soak"},
            {"seed", 50},
            {"client", clientJson(address)},
            {"phases", Json::array({{{"do", "run"}}})}};
}

} // namespace soak
