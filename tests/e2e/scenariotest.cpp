#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <thread>

#include "sandbox/platform/childprocess.h"

// Whole runs by xsandbox: scenarios as they stand, and variations of the small one as
// JSON patches. What is expected stands in the scenario; a row here says what differs.

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

/// The Windows build whose client is to run, under Wine; not there for a native one.
const char* const windowsBuild = std::getenv("XSANDBOX_WINDOWS");

constexpr int asExpected = 0;
constexpr int different = 1;
constexpr int sandboxFailed = 2;

struct Case {
    const char* name;
    const char* scenario;
    const char* patch;
    int exit = asExpected;
    const char* says = "everything is as the scenario expects";
};

void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.name;
}

/// xsandbox with a folder of the test's own.
class Sandbox : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "xsandbox-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
    }

    void TearDown() override {
        if (!HasFailure()) {
            fs::remove_all(folder);
        }
    }

    auto start(std::vector<std::string> arguments, const fs::path& output) const {
        if (windowsBuild != nullptr && (arguments[0] == "run" || arguments[0] == "host")) {
            arguments.insert(arguments.begin() + 1, {"--windows", "--binaries", windowsBuild});
        }
        arguments.insert(arguments.end(), {"--folder", (folder / "run").string()});
        return sandbox::ChildProcess::start(XSANDBOX, arguments, folder, output);
    }

    /// Its exit status; what it says is in `said`.
    int xsandbox(const std::vector<std::string>& arguments) {
        const fs::path output = folder / "output.txt";
        auto child = start(arguments, output);
        const int exit = child ? child->wait() : -1;
        std::ostringstream text;
        text << std::ifstream(output).rdbuf();
        said = text.str();
        return exit;
    }

    /// Whether each step shows its sections once, in the order of the work.
    bool tellsInOrder() const {
        const std::vector<std::string> sections{"  Conversation", "  Not for this client",
                                                "  Downloads",    "  Files",
                                                "  Notification", "  Programs",
                                                "  Result"};
        auto next = sections.begin();
        std::istringstream lines(said);
        for (std::string line; std::getline(lines, line);) {
            const auto section = std::find(sections.begin(), sections.end(), line);
            if (section == sections.end()) {
                next = line.rfind("Step ", 0) == 0 ? sections.begin() : next;
            } else if (section < next) {
                return false;
            } else {
                next = section + 1;
            }
        }
        return true;
    }

    /// A scenario with a patch, in the test's own folder.
    std::string patched(const std::string& scenario, const std::string& patch) const {
        std::ifstream stream(fs::path(SCENARIOS) / scenario);
        const fs::path file = folder / "scenario.json";
        std::ofstream(file) << Json::parse(stream).patch(Json::parse(patch)).dump(2);
        return file.string();
    }

    /// A setup leaves its trace when the client is at its version.
    void awaitTrace() const {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (fs::is_empty(folder / "run" / "sandbox" / "started")) {
            ASSERT_LT(std::chrono::steady_clock::now(), end);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }

    bool says(const std::string& text) const { return said.find(text) != std::string::npos; }

    fs::path folder;
    std::string said;
};

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
    const struct {
        std::vector<std::string> arguments;
        int exit;
        const char* says;
    } rows[] = {
        {{"ui", "--do", "check,ignore,download,install"}, asExpected, "the setup was started"},
        {{"set", "muteMode=1", "settingsWindow=open", "UPDATE_TYPE=1"}, asExpected, ""},
        {{"set", "muteMod=1"}, sandboxFailed, "known are:\n  login: on or off"},
        {{"run", scenario}, sandboxFailed, "; \"xsandbox stop\" ends it"},
        {{"set", "instances=A,B", "muteMode=7"}, sandboxFailed, "muteMode cannot be 7"},
        {{"ui", "--do", "check"}, asExpected, "you         check"},
        {{"ui", "--do", "cancel", "--limit", "1"}, different, "cancel: no event 103 has come"},
        {{"stop"}, asExpected, ""},
        {{"stop"}, sandboxFailed, "no host runs in"},
        {{"ui", "--do", "check", "--limit", "0"}, sandboxFailed, "no host runs in"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(xsandbox(row.arguments), row.exit) << said;
        EXPECT_TRUE(says(row.says)) << said;
        if (says("the setup was started")) {
            awaitTrace();
        } else {
            EXPECT_FALSE(says("offer")) << "confirmed without an event\n" << said;
        }
    }
    EXPECT_EQ(host->wait(), asExpected);
}

class Scenario : public Sandbox, public testing::WithParamInterface<Case> {};

TEST_P(Scenario, EndsAsExpected) {
    EXPECT_EQ(xsandbox({"run", patched(GetParam().scenario, GetParam().patch)}), GetParam().exit)
        << folder << "\n"
        << said;
    EXPECT_TRUE(tellsInOrder()) << said;
    EXPECT_TRUE(says(GetParam().says)) << said;
}

std::string nameOf(const testing::TestParamInfo<Case>& tested) {
    return tested.param.name;
}

INSTANTIATE_TEST_SUITE_P(Written, Scenario,
                         testing::Values(Case{"FiveChannels", "five-channels.json", "[]"},
                                         Case{"Small", "small.json", "[]"},
                                         Case{"GroupWaiting", "group-waiting.json", "[]"},
                                         Case{"GroupRefused", "group-refused.json", "[]"},
                                         Case{"Hostile", "hostile.json", "[]"},
                                         Case{"BrokenTransfer", "broken-transfer.json", "[]"},
                                         Case{"FileChannel", "file-channel.json", "[]"},
                                         Case{"PackageAutomatic", "package-automatic.json", "[]"},
                                         Case{"PackageFaults", "package-faults.json", "[]"},
                                         Case{"PackageIgnored", "package-ignored.json", "[]"},
                                         Case{"PackageMuted", "package-muted.json", "[]"},
                                         Case{"PackageRefused", "package-refused.json", "[]"},
                                         Case{"PackageUser", "package-user.json", "[]"}),
                         nameOf);

INSTANTIATE_TEST_SUITE_P(Stories, Scenario,
                         testing::Values(Case{"Cabinets", "cabinets.json", "[]"},
                                         Case{"EverythingLocked", "everything-locked.json", "[]"},
                                         Case{"FirstInstall", "first-install.json", "[]"},
                                         Case{"HalfFailed", "half-failed.json", "[]"},
                                         Case{"NoLogin", "no-login.json", "[]"},
                                         Case{"NothingNew", "nothing-new.json", "[]"},
                                         Case{"Rollback", "rollback.json", "[]"},
                                         Case{"ServiceLoop", "service-loop.json", "[]"},
                                         Case{"TenVersionsBehind", "ten-versions-behind.json",
                                              "[]"},
                                         Case{"TestSwitch", "test-switch.json", "[]"}),
                         nameOf);

/// Nothing is moved, and nothing is asked for but what the row adds.
#define NOTHING_MOVED                                                                              \
    R"({"op":"replace","path":"/phases/0/expect","value":{"materials":{"core":["left","1.2.0.1500"],"data":["left",null]}}})"

INSTANTIATE_TEST_SUITE_P(
    Absent, Scenario,
    testing::Values(
        Case{"Quiet", "small.json",
             R"([{"op":"add","path":"/client/leaveOut","value":["xnquiet.dll"]}])"},
        Case{"UserCentre", "small.json",
             R"([{"op":"add","path":"/client/leaveOut","value":["xnuser.dll"]},
                 {"op":"replace","path":"/phases/0/asks","value":{"version":"1.2.0.1500"}}])"},
        Case{"Settings", "small.json",
             R"([{"op":"add","path":"/client/leaveOut","value":["XNSetting.dll"]},
                 {"op":"remove","path":"/phases/0/expect/settings"},
                 {"op":"replace","path":"/phases/0/expect/notifications","value":[]}])"},
        Case{"GuardBase", "small.json",
             R"([{"op":"add","path":"/client/leaveOut","value":["XNGuardBase.dll"]},
                 {"op":"add","path":"/phases/0/expect/logs",
                  "value":["update plugin, can restart tray, xnguardbase nil."]}])"},
        Case{"ChannelModule", "small.json",
             R"([{"op":"add","path":"/client/leaveOut","value":["OrvSecurityver.dll"]},
                 {"op":"add","path":"/phases/0/asks/channel","value":""},
                 {"op":"add","path":"/phases/0/expect/logs",
                  "value":["load OrvSecurityver.dll failed. err:"]}])"},
        Case{"ObjectFactory", "small.json",
             R"([{"op":"add","path":"/client/leaveOut","value":["OrvBase.dll"]},
                 {"op":"add","path":"/phases/0/asks/osVersion","value":""},)" NOTHING_MOVED "]"},
        Case{"Curl", "small.json",
             R"([{"op":"add","path":"/client/leaveOut","value":["xncurl.dll"]},)" NOTHING_MOVED
             "]"},
        Case{"CurlId", "small.json",
             R"([{"op":"add","path":"/client/config",
                  "value":{"absentIds":["module.libcurl"]}},)" NOTHING_MOVED "]"},
        Case{"Base", "small.json",
             R"([{"op":"add","path":"/client/leaveOut","value":["xnbase.dll"]},
                 {"op":"add","path":"/phases/0/questions","value":0},
                 {"op":"add","path":"/phases/0/host",
                  "value":["--ticks","8","--limit","60000"]},)" NOTHING_MOVED "]"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Client, Scenario,
    testing::Values(
        Case{"NoLogin", "small.json",
             R"([{"op":"add","path":"/client/config","value":{"login":{"token":false}}},
                 {"op":"replace","path":"/phases/0/asks","value":{"version":"1.2.0.1500"}}])"},
        Case{"TestSwitch", "small.json",
             R"([{"op":"add","path":"/client/testIni",
                  "value":"[Kelvar]\nchannel_id=trial\nupdate_time=10\ntest_param=1\n"},
                 {"op":"add","path":"/phases/0/asks/channel","value":"trial"},
                 {"op":"add","path":"/phases/0/asks/test","value":true}])"},
        Case{
            "OldVersion", "small.json",
            R"([{"op":"replace","path":"/client/versions","value":{"update\\version.dat":"1.0.0.999"}},
                 {"op":"replace","path":"/phases/0/asks/version","value":"0.0.0.0"}])"},
        Case{"Muted", "small.json",
             R"([{"op":"add","path":"/client/config","value":{"muteMode":1}},
                 {"op":"add","path":"/phases/0/questions","value":0},
                 {"op":"add","path":"/phases/0/host",
                  "value":["--ticks","8","--limit","60000"]},)" NOTHING_MOVED "]"},
        Case{
            "WindowOpen", "small.json",
            R"([{"op":"add","path":"/client/config","value":{"instances":["XNREPAIR.INSTANCE"]}},)" NOTHING_MOVED
            R"(,
                 {"op":"add","path":"/phases/0/expect/downloads","value":["core","data"]},
                 {"op":"add","path":"/phases/0/expect/update","value":["{core.md5}","{data.md5}"]},
                 {"op":"add","path":"/phases/0/expect/logs",
                  "value":["update plugin, kelvar, task move, can't move . "]}])"},
        Case{
            "BadSignature", "small.json",
            R"([{"op":"add","path":"/client/config","value":{"badSignature":["OrvSecurityver.dll"]}},
                 {"op":"add","path":"/phases/0/questions","value":0},)" NOTHING_MOVED R"(,
                 {"op":"add","path":"/phases/0/expect/hostExit","value":255}])"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Answers, Scenario,
    testing::Values(Case{"MetaRefused", "small.json",
                         R"([{"op":"add","path":"/phases/0/questions","value":3},
                 {"op":"add","path":"/phases/0/faults","value":[{"on":"GetPacketMeta","fault":"status","status":503}]},)" NOTHING_MOVED
                         R"(,
                 {"op":"add","path":"/phases/0/expect/logs","value":["getPacketMeta nil"]}])"},
                    Case{"RowsMissing", "small.json",
                         R"([{"op":"add","path":"/phases/0/faults",
                  "value":[{"on":"BatchGetMaterialMeta","fault":"meta-count","count":0}]},)" NOTHING_MOVED
                         R"(,
                 {"op":"add","path":"/phases/0/expect/logs",
                  "value":["batchGetMaterialMetaData nil"]}])"},
                    Case{"NoJson", "small.json",
                         R"([{"op":"add","path":"/phases/0/faults",
                  "value":[{"on":"BatchGetMaterialMeta","fault":"not-json"}]},)" NOTHING_MOVED "]"},
                    Case{"NoStorageAddress", "small.json",
                         R"([{"op":"add","path":"/phases/0/faults",
                  "value":[{"on":"GetFileStorageAddr","fault":"body","body":"{}"}]},)" NOTHING_MOVED
                         R"(,
                 {"op":"add","path":"/phases/0/expect/materials","value":{
                    "core":["refused","1.2.0.1500","download failed"],
                    "data":["refused",null,"download failed"]}},
                 {"op":"add","path":"/phases/0/expect/update","value":["{core.md5}","{data.md5}"]}])"}),
    nameOf);

struct Wrong {
    const char* value; ///< of the first step's expectation, as the rest of a JSON patch
    const char* told;
};

/// Each expectation that is wrong is told, by what was expected and what was found.
class WrongExpectation : public Sandbox {
protected:
    void expectTold(const char* scenario, const std::vector<Wrong>& rows) {
        std::string patch;
        for (const Wrong& row : rows) {
            patch += (patch.empty() ? "[" : ",") +
                     (R"({"op":"add","path":"/phases/0/expect/)" + std::string(row.value) + "}");
        }
        EXPECT_EQ(xsandbox({"run", patched(scenario, patch + "]")}), different) << said;
        for (const Wrong& row : rows) {
            EXPECT_TRUE(says(row.told)) << row.told << "\n" << said;
        }
    }
};

TEST_F(WrongExpectation, IsToldOfTheKelvarChannel) {
    expectTold(
        "small.json",
        {{R"(materials/core","value":["refused","1.2.0.1500","already up to date"])",
          "core: expected refused: already up to date, found placed"},
         {R"(materials/data","value":["placed","1.3.0.1601"])",
          "data: version at data\\new.dat: expected 1.3.0.1601, found 1.3.0.1600"},
         {R"(programs","value":[])", "programs, number 1 of 0: expected nothing, found helper.exe"},
         {R"(notifications","value":[])", "notifications, number 1 of 0"},
         {R"(downloads","value":["data","core"])", "number 1 of 2: expected data, found core"},
         {R"(versions","value":{})", "version store, data\\new.dat: expected none"},
         {R"(fileList","value":{"entries":11,"of":["data"]})", "filelist.xml, engine\\core.dll"},
         {R"(settings","value":{})", "setting KEY_UPDATE_KELVAR_TEMP_FILE_LIST: expected none"},
         {R"(update","value":[])", "folder update: expected no other files"},
         {R"(delayed","value":{"deletes":0})", "found 0 replaces, 1 deletes"},
         {R"(hostExit","value":3)", "exit status of the host: expected 3, found 0"},
         {R"(failures","value":["no such failure"])", "failure: expected no such failure"},
         {R"(logs","value":["no such line"])", "a line with \"no such line\""}});
}

TEST_F(WrongExpectation, IsToldOfTheOtherChannels) {
    expectTold("package-automatic.json",
               {{R"(events","value":["101","102 to 99"])", "expected 102 to 99, found 102 to 100"},
                {R"(record","value":3)", "setting KEY_UPDATE_UPGRADE: expected"},
                {R"(packageChecks","value":2)", "packageChecks: expected 2, found 1"},
                {R"(packageDownloads","value":0)", "packageDownloads: expected 0, found 1"},
                {R"(fileChecks","value":0)", "fileChecks: expected 0, found 1"},
                {R"(fileDownloads","value":["patchlib0.dat"])", "fileDownloads, number 1 of 1"},
                {R"(background","value":{"orvdefender.exe --install":2})",
                 "starts of orvdefender.exe --install: expected 2, found 1"},
                {R"(reports","value":1)", "reports: expected 1 at least, found 0"},
                {R"(contents","value":{"update\\setup.exe":"0"})", "content of update\\setup.exe"},
                {R"(fileVersions","value":{"OrvSecurityver.dll":"1.2.0.1500"})",
                 "version of OrvSecurityver.dll: expected 1.2.0.1500, found 1.4.0.1"},
                {R"(fileList","value":{"entries":11,"versionFile":"1.4.0.1"})",
                 "filelist.xml, orvsecurityver.dll"}});
}

// A scenario that cannot mean what it says is refused.
#define ADDED(member) R"([{"op":"add","path":"/)" member "}]"

INSTANTIATE_TEST_SUITE_P(
    Refused, Scenario,
    testing::Values(
        Case{"Member", "small.json", ADDED(R"(client/filez","value":[])"), sandboxFailed,
             "client: there is no member \"filez\""},
        Case{"Expectation", "small.json", ADDED(R"(phases/0/expect/material","value":{})"),
             sandboxFailed, "phase \"a run\", expect: there is no member \"material\""},
        Case{"Home", "small.json", ADDED(R"(client/config","value":{"homeDirectory":"/"})"),
             sandboxFailed, "client, config: there is no member \"homeDirectory\""},
        Case{"Kind", "small.json", ADDED(R"(platform/version","value":1)"), sandboxFailed,
             "platform: member \"version\" is of the wrong kind"},
        Case{"FaultThatNeverCame", "small.json",
             ADDED(R"(phases/0/faults","value":[{"on":"core","attempt":2,"fault":"refused"}])"),
             different, "platform: the fault refused on core, attempt 2 never took effect"},
        Case{"Fault", "small.json",
             ADDED(R"(phases/0/faults","value":[{"on":"core","fault":"cutt"}])"), sandboxFailed,
             "there is no fault \"cutt\"; known are status, silent"},
        Case{"Step", "small.json", ADDED(R"(phases/0/ui","value":["fetch"])"), sandboxFailed,
             "ui: there is no command \"fetch\""},
        Case{"StepOfTwo", "small.json",
             ADDED(R"(phases/0/ui","value":[{"wait":100,"waitLog":"a"}])"), sandboxFailed,
             "does not do just one thing"},
        Case{"StepOfOther", "small.json", ADDED(R"(phases/0/ui","value":[{"waitEnd":"kelvar"}])"),
             sandboxFailed, "only of the package"},
        Case{"Set", "small.json", ADDED(R"(phases/0/set","value":{"login":{"tokn":true}})"),
             sandboxFailed, "there is no \"tokn\" of a login"},
        Case{"SetInstances", "small.json",
             ADDED(R"(phases/0/ui","value":[{"set":{"instances":[1]}}])"), sandboxFailed,
             "instances cannot be [1]"},
        Case{"ExpectedKind", "small.json", ADDED(R"(phases/0/expect/downloads","value":"core")"),
             sandboxFailed, "\"downloads\" is an array of texts or a number"},
        Case{"PackageVersion", "small.json",
             ADDED(R"(upgrade","value":{"package":{"version":"1.4","size":1}})"), sandboxFailed,
             "a version of four parts, not \"1.4\""},
        Case{"Package", "small.json", ADDED(R"(upgrade","value":{"package":{"sise":1}})"),
             sandboxFailed, "the package: there is no member \"sise\""},
        Case{"Offer", "small.json", ADDED(R"(phases/0/offers","value":["cor"])"), sandboxFailed,
             "offers: there is no material \"cor\""},
        Case{"Name", "small.json", ADDED(R"(platform/materials/0/name","value":"../core")"),
             sandboxFailed, "no plain name: ../core"},
        Case{"File", "small.json", ADDED(R"(client/files/0/path","value":"a\\..\\..\\b")"),
             sandboxFailed, "not below the client's folder: \"a\\..\\..\\b\""},
        Case{"Folder", "small.json", ADDED(R"(client/folders","value":["/b"])"), sandboxFailed,
             "not below the client's folder: \"/b\""}),
    nameOf);

} // namespace
