#include "sandbox/cli/show.h"

#include <algorithm>
#include <optional>

#include "sandbox/cli/clientstate.h"
#include "sandbox/cli/eventtail.h"
#include "sandbox/cli/layout.h"
#include "sandbox/cli/notes.h"
#include "sandbox/cli/runstate.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/jsonfile.h"

namespace sandbox {
namespace {

using Rows = std::vector<std::vector<std::string>>;

constexpr std::size_t longestValue = 72;

std::string valueText(const std::string& text) {
    return text.size() <= longestValue ? text : text.substr(0, longestValue - 3) + "...";
}

void showFiles(const ClientState& state, Console& console) {
    Rows rows;
    for (const auto& [key, file] : state.files) {
        const std::string version = state.versionAt(file.path).value_or("");
        const char* source = !file.peVersion.empty() ? "image" : version.empty() ? "" : "store";
        rows.push_back({file.path, sizeText(file.size), version, source});
    }
    console.heading("Files of the client");
    console.table({"file", "size", "version", "from"}, rows);
}

void showStores(const ClientState& state, Console& console) {
    Rows versions;
    for (const auto& [path, version] : state.versions) {
        versions.push_back({path, version});
    }
    console.heading("Version store");
    console.table({"path", "version"}, versions);
    Rows settings;
    for (const auto& [key, value] : state.settings.items()) {
        settings.push_back({key, valueText(value.dump())});
    }
    console.heading("Settings");
    console.table({"key", "value"}, settings);
}

void showFileList(const ClientState& state, const Folders& folders, bool all, Console& console) {
    const auto first = readFileList(firstFileListPath(folders));
    Rows rows;
    for (const auto& [key, entry] : state.listed) {
        const auto was = first.find(key);
        const bool isNew = was == first.end();
        if (all || isNew || !(was->second == entry)) {
            rows.push_back({entry.name, isNew ? "(none)" : was->second.version, entry.version,
                            entry.isPe, entry.size, entry.md5});
        }
    }
    console.heading("filelist.xml: " + counted(state.listed.size(), "entry") +
                    (all ? "" : ", " + std::to_string(rows.size()) + " of them new or changed"));
    console.table({"name", "was", "version", "PE", "size", "md5"}, rows);
}

void showWaiting(const ClientState& state, const ClientSystem& system, Console& console) {
    Rows waiting;
    for (const auto& [target, file] : state.padding()) {
        // A file out of a cabinet that waits with its group is listed with a leading "\\".
        const std::string name = file.substr(std::min(file.find_first_not_of('\\'), file.size()));
        const bool there = state.update.count(comparablePath(name)) != 0;
        waiting.push_back({target, "update\\" + name, there ? "waits" : "gone"});
    }
    console.heading("Padding list");
    console.table({"target", "waiting file", "state"}, waiting);
    Rows moves;
    const std::string client = toClientPath(system.spelled(system.folders().client())) + "\\";
    const auto brief = [&](const std::string& path) {
        return path.rfind(client, 0) == 0 ? path.substr(client.size()) : path;
    };
    for (const PendingMove& move : state.pending.moves) {
        moves.push_back({brief(move.from), move.to.empty() ? "(delete)" : brief(move.to)});
    }
    console.heading("Left to the next restart");
    console.table({"from", "to"}, moves);
    for (const std::string& fault : state.pending.faults) {
        console.row(Mark::fault, {fault}, {});
    }
}

void showTraces(const Folders& folders, Console& console) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(tracesFolder(folders), error)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    Rows rows;
    for (const auto& file : files) {
        const auto trace = readJson(file).value_or(nlohmann::json::object());
        std::string arguments;
        for (const auto& argument : trace.value("arguments", nlohmann::json::array())) {
            arguments += (arguments.empty() ? "" : " ") + argument.get<std::string>();
        }
        rows.push_back({toClientPath(trace.value("program", "")), arguments});
    }
    console.heading("Traces of started programs");
    console.table({"program", "arguments"}, rows);
}

std::string packageWords(const PackageNote& note) {
    return (note.isEvent() ? "event " : "command ") + std::to_string(note.code) + " " +
           valueText(note.text);
}

void showEvents(const Folders& folders, Console& console) {
    Rows programs;
    Rows notifications;
    for (const auto& event : EventTail(folders.events()).next()) {
        if (isKind(event, "process")) {
            programs.push_back({programText(event),
                                event.value("started", false) ? "started" : "no such program"});
        } else if (isKind(event, "notification")) {
            const auto note = packageNote(event);
            notifications.push_back({std::to_string(event.value("type", 0)),
                                     std::to_string(event.value("size", 0)),
                                     note ? packageWords(*note) : notifiedVersion(event)});
        }
    }
    console.heading("Programs asked for");
    console.table({"program", "outcome"}, programs);
    console.heading("Notifications");
    console.table({"type", "bytes", "content"}, notifications);
}

void showHolders(const ClientSystem& system, Console& console) {
    Rows rows;
    for (const Holder& holder : readRunState(system.folders()).holders) {
        const bool runs = system.runs(holder.id, holder.program);
        rows.push_back({holder.file, std::to_string(holder.id), runs ? "runs" : "has ended"});
    }
    console.heading("Files in use");
    console.table({"file", "process", "state"}, rows);
}

} // namespace

void showRun(const ClientSystem& system, bool allEntries, Console& console) {
    const Folders& folders = system.folders();
    const ClientState state = readClient(system);
    showFiles(state, console);
    showFileList(state, folders, allEntries, console);
    showStores(state, console);
    showHolders(system, console);
    showWaiting(state, system, console);
    showEvents(folders, console);
    showTraces(folders, console);
}

} // namespace sandbox
