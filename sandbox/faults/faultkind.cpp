#include "sandbox/faults/faultkind.h"

#include <algorithm>
#include <array>

namespace sandbox {
namespace {

using Kind = ParameterKind;

constexpr Range statuses{200, 599};
constexpr Range someBytes{0, 2'147'483'647}; // the client keeps sizes in 32 bits with a sign
constexpr Range pieces{1, someBytes.most};
constexpr Range moreBytes{-someBytes.most, 100'000'000};
constexpr Range milliseconds{0, 3'600'000};
constexpr Range nestings{1, 1'000'000};
constexpr Range rows{0, 100'000};
constexpr Range ticks{0, 4'294'967'295};

constexpr Parameter statusParameters[]{{"status", Kind::number,
                                        "HTTP status, as 204, 302, 403, 404, 429, 500, 503", "",
                                        false, statuses}};
constexpr Parameter silentParameters[]{
    {"ms", Kind::number,
     "milliseconds after which the server gives up; untold, never: transfers of files have no "
     "time-out of their own",
     "", true, milliseconds}};
constexpr Parameter brokenParameters[]{
    {"byte", Kind::number, "bytes of the body ahead of the reset", "0", false, someBytes}};
constexpr Parameter cutParameters[]{
    {"byte", Kind::number, "bytes of the body ahead of the end", "", false, someBytes},
    {"announced", Kind::flag, "whether its full length is announced", "true"}};
constexpr Parameter chunkedParameters[]{
    {"size", Kind::number, "bytes of a chunk", "64", false, pieces}};
constexpr Parameter slowParameters[]{
    {"size", Kind::number, "bytes of a piece", "256", false, pieces},
    {"ms", Kind::number, "milliseconds between pieces", "2", false, milliseconds}};
constexpr Parameter bodyParameters[]{{"body", Kind::text, "the body"}};
constexpr Parameter deepParameters[]{
    {"levels", Kind::number, "nested arrays", "100000", false, nestings}};
constexpr Parameter countParameters[]{
    {"count", Kind::number, "metas in the answer", "", false, rows}};
constexpr Parameter extendsParameters[]{
    {"as", Kind::text, "ahead or behind (of the other fields), or null"}};
constexpr Parameter lengthParameters[]{
    {"by", Kind::number, "bytes that it is longer; below 0, shorter", "-1", false, moreBytes}};
constexpr Parameter holdParameters[]{
    {"byte", Kind::number, "bytes ahead of the wait", "", false, someBytes}};
constexpr Parameter tickParameters[]{
    {"from", Kind::number, "tick of the host with which it begins; 0 is ahead of all", "0", false,
     ticks},
    {"until", Kind::number, "tick with which it ends", "", true, ticks}};
constexpr Parameter windowParameters[]{
    {"name", Kind::text, "instance of the window", "\"XNSETTINGUI.INSTANCE\""},
    tickParameters[0],
    tickParameters[1]};
constexpr Parameter inUseParameters[]{
    {"file", Kind::text, "client path, from this step on until a restart"},
    {"by", Kind::text, "program of the client that keeps it, a file of kind holder"}};

constexpr std::span<const Parameter> nothing; ///< is taken

constexpr FaultKind kinds[]{
    {"status", "status {status} in place of the answer", statusParameters,
     R"({"on": "GetPacketMeta", "attempt": 2, "fault": "status", "status": 503})", placeServed},
    {"silent", "no answer until the client or the server gives up", silentParameters,
     R"({"on": "GetPacketMeta", "fault": "silent"})", placeServed},
    {"refused", "the connection is reset behind the request, in place of an answer", nothing,
     R"({"on": "fileCheck", "fault": "refused"})", placeServed},
    {"broken", "the connection is reset behind byte {byte} of the body", brokenParameters,
     R"({"on": "m03", "fault": "broken", "byte": 1000})", placeServed},
    {"cut", "the body ends at byte {byte}, its full length announced: {announced}", cutParameters,
     R"({"on": "package", "fault": "cut", "byte": 3000000, "announced": false})", placeServed},
    {"chunked", "the body comes in chunks of {size} bytes", chunkedParameters,
     R"({"on": "BatchGetMaterialMeta", "fault": "chunked", "size": 100})", placeServed, true},
    {"slow", "the body comes {size} bytes at a time, {ms} ms apart", slowParameters,
     R"({"on": "patchlib0.dat", "fault": "slow", "size": 512, "ms": 5})", placeServed, true},
    {"empty", "an empty body", nothing, R"({"on": "GetUpgradePacket", "fault": "empty"})",
     placeServed},
    {"body", "another body: {body}", bodyParameters,
     R"({"on": "packageCheck", "fault": "body", "body": "{\"code\":1}"})", placeAnswers},
    {"not-json", "a body that is no JSON", nothing, R"({"on": "fileCheck", "fault": "not-json"})",
     placeAnswers},
    {"other-shape",
     "every value of another kind: objects and arrays, texts and "
     "numbers change places",
     nothing, R"({"on": "GetFullPacketDiff", "fault": "other-shape"})", placeAnswers},
    {"deep", "arrays nested {levels} deep", deepParameters,
     R"({"on": "GetPacketMeta", "fault": "deep", "levels": 1001})", placeAnswers},
    {"not-utf8", "texts that are not UTF-8", nothing,
     R"({"on": "packageCheck", "fault": "not-utf8"})", placeAnswers},
    {"big-numbers", "numbers past 32 bits", nothing,
     R"({"on": "GetPacketMeta", "fault": "big-numbers"})", placeAnswers, true},
    {"meta-count", "{count} metas, whatever was asked for", countParameters,
     R"({"on": "BatchGetMaterialMeta", "fault": "meta-count", "count": 1})", placeMaterials},
    {"extends", "extends as {as}", extendsParameters,
     R"({"on": "BatchGetMaterialMeta", "fault": "extends", "as": "null"})",
     placePacketMeta | placeMaterials, true},
    {"other-bytes", "a file of the same length with other bytes", nothing,
     R"({"on": "m03", "fault": "other-bytes"})", placeFile},
    {"other-length", "a file that is {by} bytes longer", lengthParameters,
     R"({"on": "m03", "fault": "other-length", "by": 100})", placeFile},
    {"hold", "the transfer waits at byte {byte} for a step of the script", holdParameters,
     R"({"on": "package", "fault": "hold", "byte": 6291456})", placeFile, true},
    {"drop", "the client's HTTP loses the request, and no answer ever comes", nothing,
     R"({"on": "GetPacketMeta", "fault": "drop"})", placeAnswers},
    {"versions-read-only", "the version store refuses every write", tickParameters,
     R"({"on": "modules", "fault": "versions-read-only", "from": 2})", placeModules},
    {"versions-full", "the version store takes no new entry", tickParameters,
     R"({"on": "modules", "fault": "versions-full"})", placeModules},
    {"settings-read-only", "the settings store refuses every write", tickParameters,
     R"({"on": "modules", "fault": "settings-read-only", "from": 1, "until": 5})", placeModules},
    {"logged-out", "the user centre has nobody logged in", tickParameters,
     R"({"on": "modules", "fault": "logged-out", "from": 3})", placeModules},
    {"logged-in", "the user centre has somebody logged in", tickParameters,
     R"({"on": "modules", "fault": "logged-in", "from": 3, "until": 6})", placeModules},
    {"mute", "mute mode", tickParameters,
     R"({"on": "modules", "fault": "mute", "from": 2, "until": 4})", placeModules},
    {"window", "the window {name} is open", windowParameters,
     R"({"on": "modules", "fault": "window", "name": "XNREPAIR.INSTANCE", "from": 1})",
     placeModules},
    {"in-use", "{by} keeps {file} in use", inUseParameters,
     R"({"on": "client", "fault": "in-use", "file": "engine\\core.dll", "by": "keeper.exe"})",
     placeClient},
    {"left-out", "modules are missing", nothing, R"("client": {"leaveOut": ["xnuser.dll"]})",
     placeStartState},
    {"bad-signature", "the signature of files is refused", nothing,
     R"("client": {"config": {"badSignature": ["OrvSecurityver.dll"]}})", placeStartState},
    {"absent-id", "the registry does not know a module", nothing,
     R"("client": {"config": {"absentIds": ["module.libcurl"]}})", placeStartState},
};

struct PlaceName {
    const char* name;
    unsigned place;
};

constexpr PlaceName placeNames[]{
    {"GetUpgradePacket", placeQuestion},
    {"GetFullPacketDiff", placeQuestion},
    {"GetPacketMeta", placePacketMeta},
    {"GetFileStorageAddr", placeQuestion},
    {"BatchGetMaterialMeta", placeMaterials},
    {"packageCheck", placeCheck},
    {"fileCheck", placeCheck},
    {"package", placeFile},
    {"patchlib0.dat", placeFile},
    {"patchlib1.dat", placeFile},
    {"modules", placeModules},
    {"client", placeClient},
};

struct PlaceWords {
    unsigned places;
    const char* words;
};

constexpr PlaceWords placeTexts[]{
    {placeQuestions, "a question of the Kelvar channel"},
    {placePacketMeta, "GetPacketMeta"},
    {placeMaterials, "BatchGetMaterialMeta"},
    {placeCheck, "packageCheck or fileCheck"},
    {placeFile, "a material, package, patchlib0.dat or patchlib1.dat"},
    {placeModules, "modules"},
    {placeClient, "client"},
    {placeStartState, "the client as laid out"},
};

} // namespace

std::span<const FaultKind> faultKinds() {
    return kinds;
}

const FaultKind* findFaultKind(std::string_view name) {
    const auto* found = std::find_if(std::begin(kinds), std::end(kinds),
                                     [&](const FaultKind& kind) { return name == kind.name; });
    return found == std::end(kinds) ? nullptr : found;
}

std::string faultNames(unsigned places) {
    std::string names;
    for (const FaultKind& kind : kinds) {
        if ((kind.places & places) != 0) {
            names.append(names.empty() ? "" : ", ").append(kind.name);
        }
    }
    return names;
}

std::optional<unsigned> fixedPlaceOf(std::string_view on) {
    const auto* found = std::find_if(std::begin(placeNames), std::end(placeNames),
                                     [&](const PlaceName& row) { return on == row.name; });
    return found == std::end(placeNames) ? std::nullopt : std::optional(found->place);
}

std::vector<std::string> fixedPlaces() {
    std::vector<std::string> names;
    for (const PlaceName& row : placeNames) {
        names.emplace_back(row.name);
    }
    return names;
}

std::string placeWords(unsigned places) {
    std::string words;
    for (const PlaceWords& row : placeTexts) {
        if ((places & row.places) == row.places) {
            places &= ~row.places; // a part of what is told already is not told again
            words.append(words.empty() ? "" : "; ").append(row.words);
        }
    }
    return words;
}

std::string rangeWords(const Range& range) {
    return std::to_string(range.least) + " to " + std::to_string(range.most);
}

} // namespace sandbox
