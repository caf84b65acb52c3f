#include <algorithm>

#include "sandbox/cli/comparison.h"
#include "sandbox/common/clientpath.h"

namespace sandbox {
namespace {

const FileState* fileAt(const ClientState& state, const std::string& path) {
    const auto found = state.files.find(comparablePath(path));
    return found == state.files.end() ? nullptr : &found->second;
}

std::string contentOf(const FileState* file) {
    return file == nullptr ? "no file" : file->md5;
}

void comparePlaced(Comparison& comparison, const BuiltMaterial& material) {
    const FileState* file = fileAt(comparison.now, material.path);
    if (file == nullptr || file->md5 != material.fileMd5) {
        comparison.differ(material.plan.name + ": content of " + material.path, material.fileMd5,
                          contentOf(file));
    }
}

void compareUntouched(Comparison& comparison, const BuiltMaterial& material) {
    const FileState* was = fileAt(comparison.before, material.path);
    const FileState* is = fileAt(comparison.now, material.path);
    if (contentOf(was) != contentOf(is)) {
        comparison.differ(material.plan.name + ": content of " + material.path, contentOf(was),
                          contentOf(is));
    }
}

bool isScheduled(const Comparison& comparison, const std::string& path, const std::string& file) {
    const std::string target = "\\" + comparablePath(path);
    return std::any_of(comparison.now.pending.moves.begin(), comparison.now.pending.moves.end(),
                       [&](const PendingMove& move) {
                           const std::string to = comparablePath(move.to);
                           const std::string from = comparablePath(move.from);
                           return to.size() > target.size() &&
                                  to.compare(to.size() - target.size(), target.size(), target) ==
                                      0 &&
                                  from.size() > file.size() &&
                                  from.compare(from.size() - file.size(), file.size(), file) == 0;
                       });
}

void compareWaiting(Comparison& comparison, const BuiltMaterial& material) {
    compareUntouched(comparison, material);
    const std::string& name = material.plan.name;
    const auto file = comparison.now.update.find(material.fileMd5);
    if (file == comparison.now.update.end() || file->second.md5 != material.fileMd5) {
        comparison.differ(name + ": waiting file", "update\\" + material.fileMd5,
                          file == comparison.now.update.end() ? "no file" : file->second.md5);
    }
    if (!isScheduled(comparison, material.path, material.fileMd5)) {
        comparison.differ(name + ": delayed move onto " + material.path, "one", "none");
    }
    if (comparison.now.padding().count(material.path) == 0) {
        comparison.differ(name + ": entry of the padding list", material.path, "none");
    }
}

void compareVersion(Comparison& comparison, const BuiltMaterial& material, const RowGoal& goal) {
    const auto version = comparison.now.versionAt(material.path);
    const std::string expected = goal.absent ? "no file" : goal.version;
    if (version.value_or("no file") != expected) {
        comparison.differ(material.plan.name + ": version at " + material.path, expected,
                          version.value_or("no file"));
    }
}

/// What the run itself said about the row.
void compareWord(Comparison& comparison, const BuiltMaterial& material, const RowGoal& goal) {
    const auto& rows = comparison.facts.rows;
    const auto row = std::find_if(rows.begin(), rows.end(), [&](const Row& candidate) {
        return candidate.material == &material;
    });
    if (row == rows.end()) {
        if (goal.state == "refused") {
            comparison.differ(material.plan.name, "refused", "not offered");
        }
        return;
    }
    const std::string reason = goal.reason.empty() ? "" : ": " + goal.reason;
    const std::string said = wordOf(row->state) + (row->reason.empty() ? "" : ": " + row->reason);
    const bool saysNothing = row->state == RowState::left && goal.state != "refused";
    if (!saysNothing && said != goal.state + reason) {
        comparison.differ(material.plan.name, goal.state + reason, said);
    }
}

} // namespace

void compareRows(Comparison& comparison) {
    for (const BuiltMaterial& material : comparison.materials) {
        const RowGoal& goal = comparison.goalOf(material);
        compareVersion(comparison, material, goal);
        if (goal.state == "placed") {
            comparePlaced(comparison, material);
        } else if (goal.state == "waiting") {
            compareWaiting(comparison, material);
        } else {
            compareUntouched(comparison, material);
        }
        if (!comparison.facts.isRestart) {
            compareWord(comparison, material, goal);
        }
    }
}

} // namespace sandbox
