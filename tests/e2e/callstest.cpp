#include "e2e/sandbox.h"

// The verbs of xsandbox around one run: what one call leaves to the next, and what is refused.

namespace e2e {
namespace {

TEST_F(Sandbox, CarriesARunOverItsCommands) {
    const std::string scenario = (fs::path(SCENARIOS) / "group-waiting.json").string();
    EXPECT_EQ(xsandbox({"run", scenario, "--steps", "1", "--keep"}), asExpected) << said;
    EXPECT_EQ(xsandbox({"show"}), asExpected);
    EXPECT_TRUE(says("waits") && says("runs") && says("helper.exe --whole")) << said;
    EXPECT_EQ(xsandbox({"restart"}), asExpected);
    EXPECT_TRUE(says("ended ") && says("1 delete of old files")) << said;
    EXPECT_EQ(xsandbox({"restart"}), asExpected);
    EXPECT_TRUE(says("nothing was waiting for a restart")) << said;
    EXPECT_EQ(xsandbox({"show"}), asExpected);
    EXPECT_TRUE(says("gone") && !says("waits")) << said;
}

TEST_F(Sandbox, GoesOnWhenTheMachineWasOff) {
    const std::string scenario = (fs::path(SCENARIOS) / "small.json").string();
    EXPECT_EQ(xsandbox({"run", scenario}), asExpected) << said;
    EXPECT_EQ(xsandbox({"show"}), asExpected);
    EXPECT_TRUE(says("(delete)")) << said;
    EXPECT_EQ(xsandbox({"restart"}), asExpected);
    EXPECT_TRUE(says("1 delete of old files")) << said;
}

TEST_F(Sandbox, RefusesAWrongCall) {
    EXPECT_EQ(xsandbox({"rum"}), sandboxFailed);
    EXPECT_TRUE(says("rum")) << said;
    EXPECT_EQ(xsandbox({"run", "none.json"}), sandboxFailed);
    EXPECT_TRUE(says("none.json: no such scenario")) << said;
    EXPECT_EQ(xsandbox({"show"}), sandboxFailed);
    EXPECT_TRUE(says("holds no run")) << said;
    const std::string scenario = (fs::path(SCENARIOS) / "small.json").string();
    EXPECT_EQ(xsandbox({"run", scenario, "--windows", "--wine", "none"}), sandboxFailed);
    EXPECT_TRUE(says("none holds no Wine system")) << said;
    EXPECT_EQ(xsandbox({"run", scenario, "--steps", "-1"}), sandboxFailed);
    EXPECT_TRUE(says("--steps: a number from 0 to ") && says("not \"-1\"")) << said;
    EXPECT_EQ(xsandbox({"show", "--color", "bad"}), sandboxFailed);
    EXPECT_TRUE(says("--color: auto, always or never, not \"bad\"")) << said;
}

TEST_F(Sandbox, NamesWhatIsDamaged) {
    const fs::path state = folder / "run" / "sandbox";
    fs::create_directories(state);
    std::ofstream(state / "config.json") << R"({"login":7,"instances":3})";
    std::ofstream(state / "settings.json") << "[1]";
    const struct {
        std::vector<std::string> arguments;
        int exit;
        const char* says;
    } rows[] = {
        {{"set", "login=off"}, sandboxFailed, "what is stored as \"login\" is no object, but 7"},
        {{"set", "settingsWindow=open"}, sandboxFailed, "\"instances\" is no array, but 3"},
        {{"set", "UPDATE_TYPE=1"}, sandboxFailed, "settings.json holds no JSON object"},
        {{"show"}, asExpected, "settings.json holds no JSON object"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(xsandbox(row.arguments), row.exit) << said;
        EXPECT_TRUE(says(row.says)) << said;
    }
    EXPECT_EQ(textOf(state / "config.json"), R"({"login":7,"instances":3})");
}

TEST_F(Sandbox, LeavesAFolderAloneThatIsNoRun) {
    fs::create_directory(folder / "run");
    std::ofstream(folder / "run" / "mine.txt") << "mine";
    const std::string scenario = (fs::path(SCENARIOS) / "small.json").string();
    EXPECT_EQ(xsandbox({"run", scenario}), sandboxFailed);
    EXPECT_TRUE(says("holds something else than a run")) << said;
    EXPECT_TRUE(fs::exists(folder / "run" / "mine.txt"));
}

TEST_F(Sandbox, KeepsAHostForOtherTerminals) {
    const std::string scenario = (fs::path(SCENARIOS) / "package-user.json").string();
    auto host = start({"host", scenario}, folder / "host.txt");
    ASSERT_TRUE(host);
    struct Call {
        std::vector<std::string> arguments;
        int exit;
        const char* says;
    };
    const auto carryOut = [this](const std::vector<Call>& calls) {
        for (const Call& call : calls) {
            EXPECT_EQ(xsandbox(call.arguments), call.exit) << said;
            EXPECT_TRUE(says(call.says)) << said;
            if (says("the setup was started")) {
                awaitTrace();
            } else {
                EXPECT_FALSE(says("offer")) << "confirmed without an event\n" << said;
            }
        }
    };
    const char* const hosted = "; \"xsandbox stop\" ends it";
    carryOut(
        {{{"ui", "--do", "check,ignore,download,install"}, asExpected, "the setup was started"},
         {{"set", "muteMode=1", "settingsWindow=open", "UPDATE_TYPE=1"}, asExpected, ""},
         {{"set", "muteMod=1"}, sandboxFailed, "known are:\n  login: on or off"}});
    // Both give the host time to end.
    auto restart = start({"restart"}, folder / "restart.txt");
    carryOut({{{"run", scenario}, sandboxFailed, hosted}});
    EXPECT_EQ(restart ? restart->wait() : asExpected, sandboxFailed);
    EXPECT_NE(textOf(folder / "restart.txt").find(hosted), std::string::npos);
    carryOut(
        {{{"set", "instances=A,B", "muteMode=7"}, sandboxFailed, "muteMode cannot be 7"},
         {{"ui", "--do", "check"}, asExpected, "you         check"},
         {{"ui", "--do", "cancel", "--limit", "1"}, different, "cancel: no event 103 has come"},
         {{"stop"}, asExpected, ""},
         {{"stop"}, sandboxFailed, "no host runs in"},
         {{"ui", "--do", "check", "--limit", "0"}, sandboxFailed, "no host runs in"}});
    EXPECT_EQ(host->wait(), asExpected);
}

} // namespace
} // namespace e2e
