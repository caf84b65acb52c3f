#include "sandbox/report/groups.h"

#include <algorithm>

namespace sandbox::report {
namespace {

constexpr const char* takenBack = "its group was taken back";
constexpr const char* notTried = "not tried, its group had failed";

/// The moved rows of groups, in the order of their moves.
std::vector<Material*> groupRows(KelvarRun& run) {
    std::vector<Material*> rows;
    for (std::size_t i = 0; i < run.tried.size(); ++i) {
        Material& row = run.materials[run.tried[i]];
        const bool isFree = row.group ? row.group->empty() : run.freeRows && i < *run.freeRows;
        if (!isFree) {
            rows.push_back(&row);
        }
    }
    return rows;
}

/// Whether a group ends between two rows that were moved one behind the other.
bool isLimit(const Material& before, const Material& after) {
    if (before.group && after.group) {
        return *before.group != *after.group;
    }
    // Inside a group rows keep the order of the list; a failed row is its group's last.
    const bool stepsBack = before.isListed && after.isListed && &after < &before;
    return before.hasFailed() || before.groupEndsHere || stepsBack;
}

bool areLimitsKnown(const KelvarRun& run, const std::vector<Material*>& rows) {
    const bool allTold = std::all_of(rows.begin(), rows.end(),
                                     [](const Material* row) { return row->group.has_value(); });
    std::size_t found = rows.empty() ? 0 : 1;
    for (std::size_t i = 1; i < rows.size(); ++i) {
        found += isLimit(*rows[i - 1], *rows[i]) ? 1U : 0U;
    }
    return allTold || (run.groups && run.freeRows && found == *run.groups);
}

/// New files that could not be taken back, beside those that wait and thus cannot be.
std::size_t leftBehind(const Material& failed, const std::vector<Material*>& group) {
    const auto waiting = static_cast<std::size_t>(std::count_if(
        group.begin(), group.end(), [](const Material* row) { return row->isScheduled; }));
    return failed.failedTakeBacks - std::min(waiting, failed.failedTakeBacks);
}

void takeBack(const Material& failed, const std::vector<Material*>& group, bool isSure,
              bool isLast) {
    std::vector<Material*> placed;
    std::copy_if(group.begin(), group.end(), std::back_inserter(placed),
                 [](const Material* row) { return row->isInPlace(); });
    const std::size_t stay = leftBehind(failed, group);
    const std::string by = failed.name.empty() ? failed.md5 : failed.name;
    for (Material* row : placed) {
        if (isSure && isLast) {
            row->decision = "untold";
            row->notes.push_back("the log ends while it is taken back because of " + by);
        } else if (isSure && stay == 0) {
            row->refuse(takenBack);
            row->notes.push_back("taken back because of " + by);
        } else if (isSure && stay == placed.size()) {
            row->notes.push_back("could not be taken back when " + by + " failed, and stays");
        } else {
            row->decision = "untold";
            row->notes.push_back(isSure ? "some of its group could not be taken back; the log does "
                                          "not tell which"
                                        : "in place, or taken back if it is of one group with " +
                                              by + "; the log does not tell");
        }
    }
}

bool hasMoved(const KelvarRun& run) {
    return run.movesDone || run.success;
}

/// The log ends before the moves do: the last group may still be taken back.
void leaveLastOpen(const KelvarRun& run, const std::vector<Material*>& lastGroup) {
    if (hasMoved(run)) {
        return;
    }
    for (Material* row : lastGroup) {
        if (row->decision == "placed") {
            row->decision = "untold";
            row->notes.emplace_back("in place, but the log ends before its group is through");
        }
    }
}

/// Rows that were there to be moved and were not: free ones are all tried.
void refuseUntried(KelvarRun& run) {
    for (Material& row : run.materials) {
        const bool hasFile =
            row.fetch == Material::Fetch::there || row.fetch == Material::Fetch::fetched;
        if (run.movesDone && hasFile && row.tried == Material::Try::none) {
            row.refuse(notTried);
        }
    }
}

} // namespace

void settleGroups(KelvarRun& run) {
    const std::vector<Material*> rows = groupRows(run);
    run.groupsAreKnown = areLimitsKnown(run, rows);
    std::vector<Material*> group;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i > 0 && isLimit(*rows[i - 1], *rows[i])) {
            group.clear();
        }
        if (rows[i]->hasFailed()) {
            const bool isLast = !hasMoved(run) && i + 1 == rows.size();
            takeBack(*rows[i], group, run.groupsAreKnown || run.groups == 1U, isLast);
        }
        group.push_back(rows[i]);
    }
    leaveLastOpen(run, group);
    refuseUntried(run);
}

} // namespace sandbox::report
