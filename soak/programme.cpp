#include "soak/programme.h"

#include "soak/tally.h"

namespace soak {
namespace {

// A lost question of the Kelvar channel is none of them: its queue would rest for good.
constexpr Turn turns[]{
    {.name = "nothing"},
    {.name = "questions: status",
     .faults = R"([{"on":"GetUpgradePacket","fault":"status","status":503}])"},
    {.name = "questions: broken",
     .faults = R"([{"on":"GetFullPacketDiff","fault":"broken","byte":10}])"},
    {.name = "questions: no JSON", .faults = R"([{"on":"GetPacketMeta","fault":"not-json"}])"},
    {.name = "questions: silence", .faults = R"([{"on":"GetFileStorageAddr","fault":"silent"}])"},
    {.name = "questions: too few rows",
     .faults = R"([{"on":"BatchGetMaterialMeta","fault":"meta-count","count":1}])"},
    {.name = "questions: too deep",
     .faults = R"([{"on":"GetPacketMeta","fault":"deep","levels":100000}])"},
    {.name = "questions: other shape",
     .faults = R"([{"on":"GetFullPacketDiff","fault":"other-shape"}])"},
    {.name = "questions: refused",
     .faults = R"([{"on":"BatchGetMaterialMeta","fault":"refused"}])"},
    {.name = "materials: broken", .faults = R"([{"on":"core","fault":"broken","byte":1000}])"},
    {.name = "materials: cut",
     .faults = R"([{"on":"base","fault":"cut","byte":1000,"announced":false}])"},
    {.name = "materials: other bytes", .faults = R"([{"on":"core","fault":"other-bytes"}])"},
    {.name = "materials: longer", .faults = R"([{"on":"second","fault":"other-length","by":100}])"},
    {.name = "materials: silence", .faults = R"([{"on":"base","fault":"silent","ms":1000}])"},
    {.name = "materials: slow", .faults = R"([{"on":"base","fault":"slow","size":4096,"ms":40}])"},
    {.name = "materials: not found", .faults = R"([{"on":"first","fault":"status","status":404}])"},
    {.name = "client: a file in use", .held = "engine/core.dll"},
    {.name = "client: one of a group in use", .held = "pair/second.dll"},
    {.name = "modules: versions read only",
     .faults = R"([{"on":"modules","fault":"versions-read-only"}])"},
    {.name = "modules: settings read only",
     .faults = R"([{"on":"modules","fault":"settings-read-only"}])"},
    {.name = "modules: nobody logged in", .faults = R"([{"on":"modules","fault":"logged-out"}])"},
    {.name = "modules: mute mode", .faults = R"([{"on":"modules","fault":"mute"}])"},
    {.name = "modules: a window",
     .faults = R"([{"on":"modules","fault":"window","name":"XNREPAIR.INSTANCE"}])"},
    {.name = "package check: status",
     .faults = R"([{"on":"packageCheck","fault":"status","status":500}])"},
    {.name = "package check: silence", .faults = R"([{"on":"packageCheck","fault":"silent"}])"},
    {.name = "package check: other shape",
     .faults = R"([{"on":"packageCheck","fault":"other-shape"}])"},
    {.name = "package check: no JSON",
     .faults = R"([{"on":"packageCheck","fault":"not-json"}])",
     .wordsOff = "check"},
    {.name = "package check: lost",
     .faults = R"([{"on":"packageCheck","fault":"drop"}])",
     .wordsOff = "check"},
    {.name = "package: broken", .faults = R"([{"on":"package","fault":"broken","byte":1000000}])"},
    {.name = "package: other bytes", .faults = R"([{"on":"package","fault":"other-bytes"}])"},
    {.name = "package: not found", .faults = R"([{"on":"package","fault":"status","status":404}])"},
    {.name = "package: mute mode ahead of the install",
     .faults = R"([{"on":"package","fault":"hold","byte":1000000}])",
     .unset = "muteMode=0",
     .wordsOff = "check",
     .does = installsInMuteMode,
     .mutesInstall = true},
    {.name = "package: the setup fails", .does = setupsThatFailed, .setupFails = true},
    {.name = "package: the user cancels",
     .faults = R"([{"on":"package","fault":"slow","size":16384,"ms":10}])",
     .set = "UPDATE_TYPE=1",
     .words = "check,download,cancel",
     .wordsOff = "check,download,install",
     .does = cancelsOfTheUser},
    {.name = "package: the settings are open",
     .set = "UPDATE_TYPE=0 settingsWindow=open",
     .unset = "settingsWindow=closed"},
};

} // namespace

std::span<const Turn> programme() {
    return turns;
}

} // namespace soak
