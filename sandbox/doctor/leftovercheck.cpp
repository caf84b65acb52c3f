#include <algorithm>
#include <array>

#include "sandbox/common/clientpath.h"
#include "sandbox/doctor/checks.h"

namespace sandbox::doctor {
namespace {

/// Where the file channel's two files lie until they are in place.
constexpr std::array<const char*, 2> transfers{"_1000", "_1001"};
constexpr const char* setupFile = "update\\setup.exe";

bool isWaiting(const Snapshot& snapshot, const std::string& key) {
    return std::any_of(snapshot.padding.begin(), snapshot.padding.end(),
                       [&](const Waiting& entry) { return entry.key == key; });
}

bool isMoved(const Snapshot& snapshot, const std::string& key) {
    return snapshot.delayed &&
           std::any_of(snapshot.delayed->begin(), snapshot.delayed->end(),
                       [&](const Delayed& move) { return move.fromKey == key; });
}

/// Other names than hashes come out of cabinets, or are the package: they stay by design. Where
/// the cabinets are not known nobody can tell.
bool isForeign(const Snapshot& snapshot, const std::string& key) {
    return snapshot.cabinetMembers && key != setupFile &&
           snapshot.cabinetMembers->count(key) == 0 && snapshot.listed(key) == nullptr &&
           !isMoved(snapshot, key) && !isWaiting(snapshot, key);
}

void checkUpdateFile(const Snapshot& snapshot, const std::string& key, const std::string& name,
                     const FileFacts& file, Report& report) {
    if (std::find(transfers.begin(), transfers.end(), name) != transfers.end()) {
        report.add(Code::transferLeftover, file.path, file.path + " did not get to its place");
    } else if (isMd5(name) && snapshot.settings && !isWaiting(snapshot, key) &&
               !isMoved(snapshot, key)) {
        report.add(Code::updateLeftover, file.path, file.path + " waits for nothing");
    } else if (!isMd5(name) && isForeign(snapshot, key)) {
        report.add(Code::updateForeign, file.path, file.path + " belongs to no cabinet");
    }
}

} // namespace

void checkLeftovers(const Snapshot& snapshot, Report& report) {
    const std::string update = updateFolder;
    const std::string temp = tempFolder;
    for (const auto& [key, file] : snapshot.files) {
        if (key.rfind(temp, 0) == 0) {
            const bool isKnown = !snapshot.settings || !snapshot.delayed ||
                                 snapshot.mayLackDelayed ||
                                 snapshot.tempNames.count(key.substr(temp.size())) != 0;
            if (!isKnown && !isMoved(snapshot, key)) {
                report.add(Code::tempLeftover, file.path,
                           file.path + " is in no list and is not to be deleted");
            }
        } else if (key.rfind(update, 0) == 0) {
            checkUpdateFile(snapshot, key, key.substr(update.size()), file, report);
        }
    }
}

} // namespace sandbox::doctor
