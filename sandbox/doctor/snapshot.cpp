#include "sandbox/doctor/snapshot.h"

#include <algorithm>

#include "sandbox/common/clientpath.h"
#include "sandbox/doctor/reading.h"
#include "sandbox/platform/filelock.h"

namespace sandbox::doctor {

const FileFacts* Snapshot::fileAt(const std::string& key) const {
    const auto found = files.find(key);
    return found == files.end() ? nullptr : &found->second;
}

bool Snapshot::isUnknown(const std::string& key) const {
    std::string path = key;
    while (unread.count(path) == 0 && !path.empty()) {
        const std::size_t end = path.find_last_of('\\');
        path.erase(end == path.npos ? 0 : end);
    }
    return unread.count(path) != 0;
}

const Waiting* Snapshot::waitingFor(const std::string& targetKey) const {
    const auto found = std::find_if(padding.begin(), padding.end(), [&](const Waiting& entry) {
        return entry.toKey == targetKey && entry.key && fileAt(*entry.key) != nullptr;
    });
    return found == padding.end() ? nullptr : &*found;
}

bool Snapshot::cameByRestart(const std::string& targetKey) const {
    return scheduledOnce.count(targetKey) != 0 ||
           std::any_of(padding.begin(), padding.end(),
                       [&](const Waiting& entry) { return entry.toKey == targetKey; });
}

std::optional<std::string> Snapshot::versionOf(const FileFacts& file) const {
    if (!file.version.empty()) {
        return file.version;
    }
    if (!versions) {
        return std::nullopt;
    }
    const std::string key = comparablePath(file.path);
    for (const auto& [path, version] : versions->items()) {
        if (comparablePath(path) == key) {
            return version.is_string() ? version.get<std::string>() : "";
        }
    }
    return "";
}

const ListEntry* Snapshot::listed(const std::string& key) const {
    if (!list) {
        return nullptr;
    }
    const auto found = std::find_if(list->begin(), list->end(), [&](const ListEntry& entry) {
        return comparablePath(entry.text("Name")) == key;
    });
    return found == list->end() ? nullptr : &*found;
}

bool Snapshot::isListedAsIs(const std::string& key) const {
    const FileFacts* file = fileAt(key);
    const ListEntry* entry = listed(key);
    return file != nullptr && entry != nullptr && lowered(entry->text("MD5")) == file->md5;
}

Snapshot takeSnapshot(const Places& places, Report& report) {
    Snapshot snapshot;
    snapshot.places = places;
    snapshot.hostRuns = !places.hostLock.empty() && FileLock::isTaken(places.hostLock);
    if (snapshot.hostRuns) {
        report.unseen.emplace_back("a client at rest: its host runs, and what it is doing at this "
                                   "moment may look like a defect");
    }
    readFiles(snapshot, report);
    readStores(snapshot, report);
    readFileList(snapshot, report);
    readLists(snapshot);
    readDelayed(snapshot, report);
    readLog(snapshot);
    readStorage(snapshot);
    readPackage(snapshot);
    snapshot.open = openFiles(places);
    return snapshot;
}

} // namespace sandbox::doctor
