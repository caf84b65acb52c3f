#include <utility>

#include "sandbox/report/movereader.h"

// The lines of a replace, of its schedule, and of a group that is taken back.

namespace sandbox::report {
namespace {

std::string fullError(const std::string& number) {
    const std::string words = systemErrorWords(number);
    return number + (words.empty() ? "" : ", " + words);
}

} // namespace

void MoveReader::replace(const Saying& saying, const LogLine& line, KelvarRun& run) {
    Material* row = current(run);
    if (row == nullptr) {
        return;
    }
    const std::string code = fullError(saying.values[0]);
    switch (saying.says) {
    case Says::targetInUse:
        row->lockedBy = code;
        row->moveLine = line.number;
        isLocked = true;
        break;
    case Says::scheduled:
        schedule(saying.values[0], line, run);
        break;
    case Says::scheduleFailed:
        if (!ofGroup.empty()) {
            ofGroup.back().error = code;
        } else {
            row->isScheduled = false;
            row->scheduleError = code;
        }
        break;
    case Says::replaceFailed:
        row->failedBy = code;
        break;
    case Says::oldFileStays:
        row->notes.push_back("the old file's delete at the restart was not accepted: " + code);
        row->moveLine = line.number;
        break;
    default:
        takeBack(saying, code, run);
    }
}

// A group is taken back when a file of it fails, and what was in place of it when another file
// has to wait: then the schedule of each file follows.
void MoveReader::takeBack(const Saying& saying, const std::string& code, KelvarRun& run) {
    Material& row = *current(run);
    if (saying.says == Says::oldFileLost) {
        const bool isNew = saying.values[0] == "2";
        const bool comesBack = !row.hasFailed();
        run.hasLostFiles = run.hasLostFiles || !isNew;
        run.notes.push_back("an old file did not come back, " + code +
                            (isNew       ? ": there was none"
                             : comesBack ? ": the target is missing until the restart"
                                         : ": the target is missing"));
        return;
    }
    run.notes.push_back("a new file could not be taken back, " + code);
    if (row.hasFailed()) {
        ++row.failedTakeBacks;
    } else {
        takeBackError = code;
    }
}

void MoveReader::schedule(const std::string& target, const LogLine& line, KelvarRun& run) {
    if (isLocked) {
        isLocked = false;
        Material& row = *current(run);
        row.isScheduled = true;
        row.target = target;
        row.moveLine = line.number;
    } else {
        ofGroup.push_back({target, std::exchange(takeBackError, {}), line.number, ""});
    }
}

void MoveReader::scheduleWithGroup(const Schedule& next, Material& row) {
    row.withItsGroup = true;
    row.target = next.target;
    row.moveLine = next.line;
    row.stayedBy = next.takeBackError;
    if (row.stayedBy.empty()) {
        row.isScheduled = next.error.empty();
        row.scheduleError = next.error;
    } else {
        row.notes.push_back("could not be taken back to wait with its group, " + row.stayedBy +
                            ", and stays");
    }
}

// A group that waits as a whole: what was in place is taken back and scheduled, in the order
// of the moves, right behind the group's last file.
void MoveReader::settleSchedules(KelvarRun& run) {
    if (ofGroup.empty()) {
        return;
    }
    run.materials[run.tried.back()].groupEndsHere = true;
    auto next = ofGroup.rbegin();
    for (auto at = run.tried.rbegin(); at != run.tried.rend() && next != ofGroup.rend(); ++at) {
        Material& row = run.materials[*at];
        if (row.isInPlace()) {
            scheduleWithGroup(*next, row);
            ++next;
        }
    }
    ofGroup.clear();
}

} // namespace sandbox::report
