#include <gtest/gtest.h>

#include "e2e/scenariorun.h"

// Faults of the client's own side: its modules, its HTTP, a file in use. The small run meets
// one and ends as it has to; the next run meets none, and completes what is missing.

namespace {

using Json = nlohmann::json;

struct Case {
    const char* name;
    const char* faults;
    const char* change = "{}"; ///< of the run that meets them, as a merge patch
    const char* after = "{}";  ///< of the run behind it
};

void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.name;
}

/// Without a chain that could be waited for.
#define ONLY_TICKS R"("host":["--ticks","8","--limit","60000"],"questions":0)"

const Case cases[] = {
    {"VersionsReadOnly", R"({"on":"modules","fault":"versions-read-only"})"},
    {"VersionsFull", R"({"on":"modules","fault":"versions-full"})"},
    {"SettingsReadOnly", R"({"on":"modules","fault":"settings-read-only"})"},
    {"LoggedOut", R"({"on":"modules","fault":"logged-out"})", R"({"asks":{"oid":-1,"id":-1}})"},
    {"LoggedOutAtTick", R"({"on":"modules","fault":"logged-out","from":1})",
     R"({"asks":{"oid":-1,"id":-1}})"},
    {"LoggedIn", R"({"on":"modules","fault":"logged-in"})", R"({"set":{"login":"off"}})",
     R"({"set":{"login":"on"}})"},
    {"Mute", R"({"on":"modules","fault":"mute"})", "{" ONLY_TICKS "}"},
    {"MuteUntilTick", R"({"on":"modules","fault":"mute","until":3})"},
    {"MuteTwice", R"({"on":"modules","fault":"mute","until":2},
                     {"on":"modules","fault":"mute","from":2,"until":3})"},
    {"Window", R"({"on":"modules","fault":"window","name":"XNREPAIR.INSTANCE"})",
     R"({"expect":{"logs":["update plugin, kelvar, task move, can't move . "]}})"},
    {"InUse", R"({"on":"client","fault":"in-use","file":"engine\\core.dll","by":"keeper.exe"})"},
    {"Dropped", R"({"on":"GetPacketMeta","fault":"drop"})",
     R"({"ui":[{"waitLog":"/GetPacketMeta"}],"questions":2})"},
};

Json faultsIn(const Case& tested) {
    return Json::parse("[" + std::string(tested.faults) + "]");
}

Json scenarioOf(const Case& tested) {
    Json scenario = e2e::smallScenario();
    scenario["client"]["files"].push_back({{"path", "keeper.exe"}, {"kind", "holder"}});
    const Json asks = {{"version", "<stored>"}, {"oid", 1001}, {"id", 2002}};
    Json run = {{"do", "run"}, {"asks", asks}, {"set", {{"KEY_UPDATE_KELVAR_LAST_CHECK_TIME", 1}}}};
    run["expect"]["versions"] = {{"update\\version.dat", "1.3.0.1600"},
                                 {"data\\new.dat", "1.3.0.1600"}};
    Json faulty = run;
    faulty["expect"]["client"] = "either";
    faulty["faults"] = faultsIn(tested);
    faulty.merge_patch(Json::parse(tested.change));
    run["expect"]["client"] = "complete";
    run.merge_patch(Json::parse(tested.after));
    const Json restart = {{"do", "restart"}, {"expect", {{"client", "either"}}}};
    scenario["phases"] = {faulty, restart, run};
    return scenario;
}

class ClientFault : public testing::TestWithParam<Case> {};

TEST_P(ClientFault, IsMetAndGotOver) {
    const std::filesystem::path folder = e2e::newFolder();
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ(e2e::runScenario(scenarioOf(GetParam()), folder), 0)
        << folder << "\n"
        << e2e::textOf(folder / "output");
    EXPECT_EQ(e2e::faultsOf(folder).size(), faultsIn(GetParam()).size());
    if (!HasFailure()) {
        std::filesystem::remove_all(folder);
    }
}

TEST(FaultsByAttempt, MeetTheirOwnRequestOnly) {
    Json scenario = e2e::smallScenario();
    Json& run = scenario["phases"][0];
    run["host"] = {"--runs", "2", "--limit", "60000"};
    run["questions"] = {5, 5};
    const Json fault = {{"on", "BatchGetMaterialMeta"}, {"fault", "status"}, {"status", 503}};
    run["faults"] = Json::array({fault});
    run["faults"][0]["attempt"] = 1;
    const std::filesystem::path folder = e2e::newFolder();
    EXPECT_EQ(e2e::runScenario(scenario, folder), 0) << e2e::textOf(folder / "output");
    const auto faults = e2e::faultsOf(folder);
    EXPECT_EQ(faults.size(), 1U);
    EXPECT_EQ(faults.at(0).at("attempt"), 1);
    std::filesystem::remove_all(folder);
}

INSTANTIATE_TEST_SUITE_P(FaultsOfClient, ClientFault, testing::ValuesIn(cases),
                         [](const auto& tested) { return tested.param.name; });

} // namespace
