#include "sandbox/check/scenarioshape.h"

namespace sandbox::check {
namespace {

constexpr const char* clientKinds[]{"pe", "data", "program", "holder"};
constexpr const char* servedKinds[]{"pe", "data"};
constexpr const char* methods[]{"stored", "mszip", "lzx", "quantum"};
constexpr const char* steps[]{"run", "restart"};
constexpr const char* modules[]{"xnbase.dll",  "XNSetting.dll",      "xnuser.dll",
                                "xnquiet.dll", "OrvBase.dll",        "XNGuardBase.dll",
                                "xncurl.dll",  "OrvSecurityver.dll", "xrefresher.dll"};
constexpr const char* looseStates[]{"either", "complete"};
constexpr const char* states[]{"placed", "waiting", "refused", "left"};
constexpr const char* reasons[]{"for another client version",
                                "for another system version",
                                "already up to date",
                                "download failed",
                                "hash is no plain name",
                                "target outside the client",
                                "cabinet does not expand",
                                "file is missing in its cabinet",
                                "content is not the announced one",
                                "not newer than what stands",
                                "cannot be put in place",
                                "cannot be left to the restart",
                                "its group was taken back",
                                "not tried, its group had failed"};

constexpr Member clientFileMembers[]{{"path", Holds::text, true},
                                     {"kind", Holds::text, false, nullptr, clientKinds},
                                     {"version", Holds::text},
                                     {"size", Holds::number}};
constexpr Shape clientFile{"a file of the client", clientFileMembers};

constexpr Member packageFileMembers[]{{"path", Holds::text, true},
                                      {"kind", Holds::text, false, nullptr, servedKinds},
                                      {"version", Holds::text},
                                      {"size", Holds::number}};
constexpr Shape packageFile{"a file of the package", packageFileMembers};

constexpr Member heldMembers[]{{"file", Holds::text, true}, {"by", Holds::text, true}};
constexpr Shape held{"a held file", heldMembers};

constexpr Member osMembers[]{
    {"major", Holds::number}, {"minor", Holds::number}, {"build", Holds::number}};
constexpr Shape os{"the system", osMembers};

constexpr Member loginMembers[]{{"token", Holds::flag},     {"device", Holds::flag},
                                {"service", Holds::flag},   {"identity", Holds::text},
                                {"tokenText", Holds::text}, {"phone", Holds::text}};
constexpr Shape login{"the login", loginMembers};

constexpr Member configMembers[]{{"serverAddress", Holds::textOrNull},
                                 {"upgradeAddress", Holds::textOrNull},
                                 {"httpTimeoutMs", Holds::number},
                                 {"os", Holds::object, false, &os},
                                 {"login", Holds::object, false, &login},
                                 {"muteMode", Holds::whole},
                                 {"channelType", Holds::text},
                                 {"instances", Holds::texts},
                                 {"absentIds", Holds::texts},
                                 {"badSignature", Holds::texts}};
constexpr Shape config{"config", configMembers};

constexpr Member clientMembers[]{{"version", Holds::text, true},
                                 {"versions", Holds::textMap},
                                 {"files", Holds::list, false, &clientFile},
                                 {"folders", Holds::texts},
                                 {"held", Holds::list, false, &held},
                                 {"fileListEntries", Holds::number},
                                 {"leaveOut", Holds::texts, false, nullptr, modules},
                                 {"background", Holds::texts},
                                 {"config", Holds::object, false, &config},
                                 {"settings", Holds::anyObject},
                                 {"testIni", Holds::text}};
constexpr Shape client{"the client", clientMembers};

constexpr Member broughtMembers[]{{"kind", Holds::text, false, nullptr, servedKinds},
                                  {"version", Holds::text},
                                  {"size", Holds::number}};
constexpr Shape brought{"the material's file", broughtMembers};

constexpr Member packedMembers[]{{"name", Holds::text, true},
                                 {"kind", Holds::text, false, nullptr, servedKinds},
                                 {"version", Holds::text},
                                 {"size", Holds::number}};
constexpr Shape packed{"a member of the cabinet", packedMembers};

constexpr Member cabinetMembers[]{{"method", Holds::text, true, nullptr, methods, "cabinet-method"},
                                  {"with", Holds::list, false, &packed},
                                  {"as", Holds::text}};
constexpr Shape cabinet{"the cabinet", cabinetMembers};

constexpr Member materialMembers[]{
    {"name", Holds::text, true},    {"version", Holds::text, true},
    {"path", Holds::text, true},    {"file", Holds::object, true, &brought},
    {"module", Holds::text},        {"cabinet", Holds::object, false, &cabinet},
    {"parameters", Holds::textMap}, {"md5", Holds::text},
    {"cutTo", Holds::number}};
constexpr Shape material{"a material", materialMembers};

constexpr Member bulkMembers[]{{"count", Holds::number, true},
                               {"minSize", Holds::number, true},
                               {"maxSize", Holds::number, true},
                               {"version", Holds::text, true},
                               {"cabinets", Holds::number, true},
                               {"methods", Holds::texts, true, nullptr, methods, "cabinet-method"}};
constexpr Shape bulk{"bulk", bulkMembers};

constexpr Member platformMembers[]{
    {"version", Holds::text, true},       {"productId", Holds::text},
    {"channelId", Holds::text},           {"restartTray", Holds::text},
    {"modules", Holds::textMap},          {"materials", Holds::list, false, &material},
    {"bulk", Holds::object, false, &bulk}};
constexpr Shape platform{"the platform", platformMembers};

constexpr Member packageMembers[]{{"version", Holds::text, true},
                                  {"size", Holds::number, true},
                                  {"content", Holds::text},
                                  {"isForce", Holds::flag},
                                  {"announced", Holds::number},
                                  {"fails", Holds::flag},
                                  {"files", Holds::list, false, &packageFile},
                                  {"md5", Holds::text},
                                  {"url", Holds::text}};
constexpr Shape package{"the package", packageMembers};

constexpr Member servedFileMembers[]{{"type", Holds::whole, true},
                                     {"version", Holds::text, true},
                                     {"size", Holds::number},
                                     {"md5", Holds::text},
                                     {"url", Holds::text}};
constexpr Shape servedFile{"a file of the upgrade server", servedFileMembers};

constexpr Member upgradeMembers[]{{"package", Holds::object, false, &package},
                                  {"files", Holds::list, false, &servedFile}};
constexpr Shape upgrade{"upgrade", upgradeMembers};

constexpr Member fileListMembers[]{
    {"entries", Holds::number}, {"of", Holds::names}, {"versionFile", Holds::text}};
constexpr Shape fileList{"fileList", fileListMembers};

constexpr Member delayedMembers[]{{"replaces", Holds::number}, {"deletes", Holds::number}};
constexpr Shape delayed{"delayed", delayedMembers};

constexpr Member expectMembers[]{{"materials", Holds::anyObject},
                                 {"downloads", Holds::textsOrNumber},
                                 {"programs", Holds::texts},
                                 {"notifications", Holds::texts},
                                 {"versions", Holds::textMap},
                                 {"versionsOf", Holds::names},
                                 {"fileList", Holds::object, false, &fileList},
                                 {"settings", Holds::anyObject},
                                 {"update", Holds::texts},
                                 {"delayed", Holds::object, false, &delayed},
                                 {"logs", Holds::texts},
                                 {"hostExit", Holds::whole},
                                 {"events", Holds::texts},
                                 {"record", Holds::record},
                                 {"background", Holds::numberMap},
                                 {"packageChecks", Holds::number},
                                 {"packageDownloads", Holds::number},
                                 {"fileChecks", Holds::number},
                                 {"fileDownloads", Holds::texts},
                                 {"contents", Holds::textMap},
                                 {"fileVersions", Holds::textMap},
                                 {"reports", Holds::number},
                                 {"failures", Holds::texts},
                                 {"client", Holds::text, false, nullptr, looseStates},
                                 {"anything", Holds::texts}};
constexpr Shape expect{"expect", expectMembers};

constexpr Member asksMembers[]{{"channel", Holds::text},   {"version", Holds::text},
                               {"oid", Holds::whole},      {"id", Holds::whole},
                               {"test", Holds::flag},      {"phone", Holds::text},
                               {"token", Holds::text},     {"clientVersion", Holds::text},
                               {"osVersion", Holds::text}, {"files", Holds::textMap}};
constexpr Shape asks{"asks", asksMembers};

constexpr Member phaseMembers[]{{"do", Holds::text, true, nullptr, steps},
                                {"title", Holds::text},
                                {"expect", Holds::object, false, &expect},
                                {"asks", Holds::object, false, &asks},
                                {"offers", Holds::names},
                                {"questions", Holds::numbers},
                                {"faults", Holds::anyList},
                                {"host", Holds::texts},
                                {"ui", Holds::anyList},
                                {"upgrade", Holds::patch, false, &upgrade},
                                {"set", Holds::anyObject}};
constexpr Shape phase{"a phase", phaseMembers};

constexpr Member scenarioMembers[]{{"title", Holds::text},
                                   {"seed", Holds::number},
                                   {"client", Holds::object, true, &client},
                                   {"platform", Holds::object, false, &platform},
                                   {"upgrade", Holds::object, false, &upgrade},
                                   {"phases", Holds::list, true, &phase}};
constexpr Shape scenario{"the scenario", scenarioMembers};

} // namespace

const Shape& scenarioShape() {
    return scenario;
}

Words stateWords() {
    return states;
}

Words moduleWords() {
    return modules;
}

Words reasonWords() {
    return reasons;
}

} // namespace sandbox::check
