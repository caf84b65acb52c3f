#include "sandbox/cli/runpicture.h"

#include <algorithm>

#include "sandbox/cli/clientstate.h"
#include "sandbox/cli/eventtail.h"
#include "sandbox/cli/layout.h"
#include "sandbox/cli/notes.h"
#include "sandbox/cli/restart.h"
#include "sandbox/cli/runstate.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/jsonfile.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

Json filesIn(const ClientState& state) {
    Json files = Json::array();
    for (const auto& [key, file] : state.files) {
        const std::string version = state.versionAt(file.path).value_or("");
        const char* source = !file.peVersion.empty() ? "image" : version.empty() ? "" : "store";
        files.push_back(
            {{"file", file.path}, {"size", file.size}, {"version", version}, {"from", source}});
    }
    return files;
}

Json fileListIn(const ClientState& state, const Folders& folders, bool all) {
    const auto first = readFileList(firstFileListPath(folders));
    Json entries = Json::array();
    for (const auto& [key, entry] : state.listed) {
        const auto was = first.find(key);
        const bool isNew = was == first.end();
        if (all || isNew || !(was->second == entry)) {
            entries.push_back({{"name", entry.name},
                               {"was", isNew ? Json(nullptr) : Json(was->second.version)},
                               {"version", entry.version},
                               {"isPe", entry.isPe},
                               {"size", entry.size},
                               {"md5", entry.md5}});
        }
    }
    return entries;
}

Json holdersOf(const ClientSystem& system) {
    Json holders = Json::array();
    for (const Holder& holder : readRunState(system.folders()).holders) {
        holders.push_back({{"file", holder.file},
                           {"process", holder.id},
                           {"runs", system.runs(holder.id, holder.program)}});
    }
    return holders;
}

Json waitingIn(const ClientState& state) {
    Json waiting = Json::array();
    for (const auto& [target, file] : state.padding()) {
        // A file out of a cabinet that waits with its group is listed with a leading "\\".
        const std::string name = file.substr(std::min(file.find_first_not_of('\\'), file.size()));
        const bool there = state.update.count(comparablePath(name)) != 0;
        waiting.push_back({{"target", target}, {"file", "update\\" + name}, {"isThere", there}});
    }
    return waiting;
}

Json movesIn(const ClientState& state, const ClientSystem& system) {
    Json moves = Json::array();
    for (const PendingMove& move : state.pending.moves) {
        moves.push_back(
            membersOf(PendingMove{belowClient(move.from, system), belowClient(move.to, system)}));
    }
    return moves;
}

Json tracesIn(const Folders& folders) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(tracesFolder(folders), error)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    Json traces = Json::array();
    for (const auto& file : files) {
        const Json trace = readJson(file).value_or(Json::object());
        traces.push_back({{"program", toClientPath(trace.value("program", ""))},
                          {"arguments", trace.value("arguments", Json::array())}});
    }
    return traces;
}

Json notificationOf(const Json& event) {
    Json told{{"type", event.value("type", 0)}, {"bytes", event.value("size", 0)}};
    const auto note = packageNote(event);
    told["code"] = note ? Json(note->code) : Json(nullptr);
    told["text"] = note ? note->text : notifiedVersion(event);
    return told;
}

/// Programs that were asked for, and notifications.
void addEvents(const Folders& folders, Json& picture) {
    picture["programs"] = picture["notifications"] = Json::array();
    for (const Json& event : EventTail(folders.events()).next()) {
        if (isKind(event, "process")) {
            picture["programs"].push_back(
                {{"program", programText(event)}, {"started", event.value("started", false)}});
        } else if (isKind(event, "notification")) {
            picture["notifications"].push_back(notificationOf(event));
        }
    }
}

} // namespace

Json pictureOf(const ClientSystem& system, bool allEntries) {
    const Folders& folders = system.folders();
    const ClientState state = readClient(system);
    Json picture{{"folder", folders.root().string()},
                 {"system", system.name()},
                 {"files", filesIn(state)},
                 {"fileListEntries", state.listed.size()},
                 {"fileList", fileListIn(state, folders, allEntries)},
                 {"versions", state.versions},
                 {"settings", state.settings},
                 {"damaged", state.damaged},
                 {"holders", holdersOf(system)},
                 {"padding", waitingIn(state)},
                 {"moves", movesIn(state, system)},
                 {"faults", state.pending.faults},
                 {"traces", tracesIn(folders)}};
    addEvents(folders, picture);
    return picture;
}

} // namespace sandbox
