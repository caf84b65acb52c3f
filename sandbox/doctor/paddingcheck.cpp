#include <algorithm>
#include <set>

#include "sandbox/common/clientpath.h"
#include "sandbox/doctor/checks.h"

namespace sandbox::doctor {
namespace {

/// The name of a waiting file is the MD5 of its content.
std::string nameOf(const std::string& key) {
    return key.substr(key.find_last_of('\\') + 1);
}

bool isScheduled(const Snapshot& snapshot, const Waiting& entry) {
    return std::any_of(snapshot.delayed->begin(), snapshot.delayed->end(),
                       [&](const Delayed& move) {
                           return move.fromKey == entry.key && move.toKey == entry.toKey;
                       });
}

void checkWaiting(const Snapshot& snapshot, const Waiting& entry, const FileFacts& file,
                  Report& report) {
    const std::string name = nameOf(*entry.key);
    if (isMd5(name) && name != file.md5) {
        report.add(Code::waitingChanged, file.path,
                   file.path + ", which waits for " + entry.target + ", has MD5 " + file.md5);
    } else if (snapshot.delayed && !snapshot.mayLackDelayed && !isScheduled(snapshot, entry)) {
        report.add(Code::waitingNotScheduled, file.path,
                   file.path + " waits for " + entry.target + " without a delayed move");
    }
}

/// The normal end of an entry: the restart has moved its file, or a later update came first.
/// Nobody takes the last entries out of the list, so they stay.
bool hasEnded(const Snapshot& snapshot, const Waiting& entry) {
    const FileFacts* target = snapshot.fileAt(*entry.toKey);
    return target != nullptr &&
           (target->md5 == nameOf(*entry.key) || snapshot.isListedAsIs(*entry.toKey));
}

void checkEntry(const Snapshot& snapshot, const Waiting& entry, Report& report) {
    if (!entry.toKey || !entry.key) {
        report.add(Code::paddingOutside, entry.target,
                   "the padding list has \"" + entry.file + "\" for \"" + entry.target + "\"");
    } else if (const FileFacts* file = snapshot.fileAt(*entry.key)) {
        checkWaiting(snapshot, entry, *file, report);
    } else if (!hasEnded(snapshot, entry) && !snapshot.isUnknown(*entry.key) &&
               !snapshot.isUnknown(*entry.toKey)) {
        report.add(Code::waitingGone, entry.target,
                   *entry.key + ", which waits for " + entry.target + ", is not there");
    }
}

} // namespace

void checkPadding(const Snapshot& snapshot, Report& report) {
    std::set<std::string> files;
    std::set<std::string> targets;
    for (const Waiting& entry : snapshot.padding) {
        const bool waits = entry.key && snapshot.fileAt(*entry.key) != nullptr;
        const bool sameFile = waits && !files.insert(*entry.key).second;
        const bool sameTarget = entry.toKey && !targets.insert(*entry.toKey).second;
        if (sameFile || sameTarget) {
            report.add(Code::paddingDouble, entry.target,
                       entry.target + ": the padding list has " +
                           (sameFile ? *entry.key : *entry.toKey) + " twice");
        } else {
            checkEntry(snapshot, entry, report);
        }
    }
}

} // namespace sandbox::doctor
