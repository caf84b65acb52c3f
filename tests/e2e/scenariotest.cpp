#include "e2e/sandbox.h"

// Whole runs by xsandbox: scenarios as they stand, and variations of the small one as
// JSON patches. What is expected stands in the scenario; a row here says what differs.

namespace e2e {
namespace {

TEST_P(Scenario, EndsAsExpected) {
    EXPECT_EQ(xsandbox({"run", patched(GetParam().scenario, GetParam().patch)}), GetParam().exit)
        << folder << "\n"
        << said;
    EXPECT_TRUE(tellsInOrder()) << said;
    EXPECT_TRUE(says(GetParam().says)) << said;
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

} // namespace
} // namespace e2e
