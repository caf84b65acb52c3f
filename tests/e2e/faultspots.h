#pragma once

#include "e2e/scenariorun.h"

/// What of a client's conversations a fault can stand on, and the scenario that gets there.
namespace e2e {

using Json = nlohmann::json;

/// Which faults make sense for it.
enum Kind : unsigned {
    question = 1,
    metas = 2,
    packetMeta = 4,
    check = 8,
    file = 16,
    numbers = 32
};
inline constexpr unsigned answers = question | check;
inline constexpr unsigned all = answers | file;

inline Json kelvarCell() {
    Json scenario = smallScenario();
    scenario["platform"]["restartTray"] = "1"; // so that there is an "extends" to be misplaced
    const Json expect = {
        {"versions", {{"update\\version.dat", "1.3.0.1600"}, {"data\\new.dat", "1.3.0.1600"}}}};
    const Json asks = {{"version", "<stored>"}, {"oid", 1001}, {"id", 2002}};
    // At the first tick: the time of the last check would hold the second run back.
    const Json set = {{"KEY_UPDATE_KELVAR_LAST_CHECK_TIME", 1}};
    const Json run = {{"do", "run"}, {"asks", asks}, {"set", set}, {"expect", expect}};
    scenario["phases"] = {run, run};
    return scenario;
}

/// A cell of the upgrade server; each run ends when what `begins` has come to its end.
inline Json upgradeCell(const Json& client, const Json& upgrade, const char* begins) {
    Json scenario = {{"seed", 71},
                     {"client",
                      {{"version", "1.2.0.1500"},
                       {"background", {"orvdefender.exe --install"}},
                       {"settings",
                        {{"KEY_UPDATE_PKG_LAST_CHECK_TIME", 9000000000000},
                         {"KEY_UPDATE_KELVAR_LAST_CHECK_TIME", 9000000000000}}}}},
                     {"upgrade", upgrade}};
    scenario["client"].merge_patch(client);
    const Json run = {{"do", "run"},
                      {"asks", {{"files", {{"1000", "<stored>"}, {"1001", "<stored>"}}}}},
                      {"ui", Json::array({{{"waitLog", begins}}})},
                      {"expect", Json::object()}};
    scenario["phases"] = {run, run};
    return scenario;
}

inline Json packageCell() {
    constexpr std::size_t packageSize = 12'582'912; // holds the setup program of any build
    Json scenario = upgradeCell({{"testIni", "[Kelvar]\nupdate_time=60000\n"},
                                 {"settings", {{"KEY_UPDATE_PKG_LAST_CHECK_TIME", 1}}}},
                                {{"package", {{"version", "1.4.0.1"}, {"size", packageSize}}}},
                                "update plugin, pkg, task check, request:");
    scenario["phases"][1]["set"] = {{"KEY_UPDATE_PKG_LAST_CHECK_TIME", 1}};
    scenario["phases"][1]["ui"] = Json::array({{{"waitVersion", "1.4.0.1"}}});
    return scenario;
}

inline Json fileCell() {
    const Json files = {{{"type", 1000}, {"version", "1.3.0.1"}, {"size", 40960}},
                        {{"type", 1001}, {"version", "1.3.0.2"}, {"size", 5000}}};
    return upgradeCell({{"files", Json::array({{{"path", "patchlib0.dat"}, {"size", 2000}}})}},
                       {{"files", files}}, "update plugin, file, task check, request:");
}

struct Spot {
    const char* on;
    unsigned kinds;
    Json (*cell)();
};

inline void PrintTo(const Spot& spot, std::ostream* out) {
    *out << spot.on;
}

inline constexpr Spot spots[] = {
    {"GetUpgradePacket", question, kelvarCell},
    {"GetFullPacketDiff", question, kelvarCell},
    {"GetPacketMeta", question | packetMeta | numbers, kelvarCell},
    {"GetFileStorageAddr", question, kelvarCell},
    {"BatchGetMaterialMeta", question | metas | numbers, kelvarCell},
    {"core", file, kelvarCell},
    {"packageCheck", check | numbers, packageCell},
    {"package", file, packageCell},
    {"fileCheck", check | numbers, fileCell},
    {"patchlib0.dat", file, fileCell},
};

} // namespace e2e
