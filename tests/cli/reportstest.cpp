#include <gtest/gtest.h>

#include "sandbox/cli/comparison.h"

// What the client reports of itself, by what it is and was in the run.

namespace {

using Json = nlohmann::json;
using Events = std::vector<Json>;

Json login(bool token) {
    return {{"kind", "login"}, {"token", token}};
}

Json report(const std::vector<std::string>& fields, int at = 0) {
    return {{"kind", "event"}, {"t", at}, {"fields", fields}};
}

Json told(const char* version, const char* type, int at = 0) {
    return report({"trayhost.exe", "run", version, "9.8.7.6", type, "", ""}, at);
}

sandbox::ClientState clientOf(const char* version) {
    sandbox::ClientState client;
    client.files["orvsecurityver.dll"].peVersion = version;
    client.files["trayhost.exe"].peVersion = "9.8.7.6";
    return client;
}

struct Case {
    const char* name;
    Events events;
    const char* found; ///< of the first difference; empty for none
};

const char* const was = "1.2.0.1500";
const char* const is = "1.4.0.1";

TEST(ReportsTest, AreComparedWithTheClient) {
    const Case cases[] = {
        {"before and after the setup", {login(true), told(was, "1"), told(is, "1", 14400)}, ""},
        {"no user centre", {told(is, "2")}, ""},
        {"log-in told behind it", {login(false), told(is, "1"), login(true)}, ""},
        {"version", {login(true), told("1.3.0.1", "1")}, "run, 1.3.0.1,"},
        {"type", {login(true), told(is, "2")}, "9.8.7.6, 2"},
        {"host's version",
         {login(true), report({"trayhost.exe", "run", is, "", "1", "", ""})},
         "1.4.0.1, , 1"},
        {"length", {login(true), report({"trayhost.exe", "run"})}, "found trayhost.exe, run"},
        {"name", {login(true), report({})}, "of trayhost, found "},
        {"too soon", {login(true), told(is, "1"), told(is, "1", 13000)}, "found 13000 ms"},
    };
    const sandbox::ClientState before = clientOf(was);
    const sandbox::ClientState now = clientOf(is);
    const std::vector<sandbox::BuiltMaterial> materials;
    const sandbox::BuiltUpgrade upgrade;
    const sandbox::Goals goals;
    const Json expect = Json::object();
    for (const Case& row : cases) {
        sandbox::PhaseFacts facts;
        facts.events = row.events;
        sandbox::Comparison comparison{materials, upgrade, goals, before, now, facts, expect};
        compareReports(comparison);
        const std::string all = sandbox::joined(comparison.differences);
        EXPECT_EQ(comparison.differences.size(), *row.found == '\0' ? 0U : 1U) << row.name;
        EXPECT_NE(all.find(row.found), std::string::npos) << row.name << ": " << all;
    }
}

} // namespace
