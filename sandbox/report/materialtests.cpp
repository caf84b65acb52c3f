#include "sandbox/report/materialtests.h"

#include <map>

#include "sandbox/common/clientpath.h"
#include "sandbox/report/conditions.h"
#include "sandbox/report/naming.h"
#include "sandbox/report/verdict.h"

namespace sandbox::report {
namespace {

using Fetch = Material::Fetch;
using Try = Material::Try;

std::string bothHashes(const Material& row) {
    return row.md5 + " / " + row.detail[0];
}

void addDownload(Material& row) {
    Test test{"download", row.url, "", "", verdict::passed, verdict::fromLog};
    switch (row.fetch) {
    case Fetch::none:
        return;
    case Fetch::badName:
        test = {"hash", bothHashes(row), "is", "a plain name", verdict::failed, verdict::fromLog};
        break;
    case Fetch::there:
        test.left = "reused: it lay in the update folder";
        break;
    case Fetch::failed:
        test.right = row.fetchError;
        test.verdict = verdict::failed;
        break;
    default: // that it worked has no line
        test.from = verdict::fromOrder;
        test.verdict = row.isOpen && row.tried == Try::none ? verdict::untold : verdict::passed;
        break;
    }
    if (!row.fault.empty()) {
        test.right += (test.right.empty() ? "" : "; ") + row.fault;
        test.from = verdict::withSource(test.from, "faults");
    }
    row.tests.push_back(test);
}

/// The last look ahead of a move, as far as the log, or else the scenario, tells its versions.
Test versionLook(const Material& row, const Planned* planned, const Standing::Found& onDisk) {
    Test test{"version", "", ">", "", "", ""};
    if (row.tried == Try::version) {
        test.left = row.detail[0];
        test.right = row.detail[1];
    } else if (planned != nullptr) {
        test.left = planned->fileVersion.empty() ? row.version : planned->fileVersion;
        test.right = verdict::wordsOf(onDisk);
        if (row.tried == Try::moved && onDisk.version &&
            compareVersions(test.left, *onDisk.version) <= 0) {
            test.right.clear(); // another one stood there
        }
    }
    return test;
}

/// The looks at a file ahead of its move, each with what it compares.
struct Look {
    Try fails;
    Test test;
};

std::vector<Look> looksOf(const Material& row, const Test& version) {
    const std::string cause = row.tried == Try::cabinet ? row.detail[0] : "";
    return {
        {Try::badName,
         {"names", row.tried == Try::badName ? bothHashes(row) : row.md5, "is", "a plain name", "",
          ""}},
        {Try::badPath, {"target", row.target, "below", "the client's folder", "", ""}},
        {Try::isFolder, {"target", row.target, "is", "no folder", "", ""}},
        {Try::cabinet,
         {"cabinet", cause.empty() ? "if it is one" : cause, "expands into", "the update folder",
          "", ""}},
        {Try::missing,
         {"file", row.tried == Try::missing ? row.detail[0] : "the file to place", "is in",
          "the update folder", "", ""}},
        {Try::hash, {"hash", row.tried == Try::hash ? row.detail[1] : "", "==", "", "", ""}},
        {Try::version, version},
    };
}

void addLooks(Material& row, const Planned* planned, const Standing::Found& onDisk) {
    if (row.tried == Try::none) {
        return;
    }
    bool isOver = false;
    for (Look look : looksOf(row, versionLook(row, planned, onDisk))) {
        const bool hasFailed = look.fails == row.tried;
        look.test.verdict = isOver                     ? verdict::notAsked
                            : hasFailed                ? verdict::failed
                            : row.tried == Try::untold ? verdict::untold
                                                       : verdict::passed;
        look.test.from = hasFailed ? verdict::fromLog : verdict::fromOrder;
        if (planned != nullptr && look.fails == Try::version && !hasFailed) {
            look.test.from = verdict::withSource(look.test.from, verdict::fromScenario);
        }
        isOver = isOver || hasFailed;
        row.tests.push_back(look.test);
    }
}

void addGroup(Material& row) {
    if (row.withItsGroup) {
        row.tests.push_back(
            {"group", "another file of it", "waits",
             row.stayedBy.empty() ? "taken back" : "not taken back, " + row.stayedBy,
             verdict::failed, verdict::fromLog});
    } else if (row.reason == "its group was taken back") {
        row.tests.push_back({"group", "another file of it", "was refused", "taken back",
                             verdict::failed,
                             row.group ? "log, scenario" : "log, order of the moves"});
    }
}

void addReplace(Material& row) {
    if (row.tried != Try::moved) {
        return;
    }
    Test now{"replace now", "new file", "takes its place", "", verdict::passed, verdict::fromOrder};
    if (!row.lockedBy.empty()) {
        now = {"replace now", "old file",      "leaves its place",
               row.lockedBy,  verdict::failed, verdict::fromLog};
    } else if (!row.failedBy.empty()) {
        now.right = row.failedBy;
        now.verdict = verdict::failed;
        now.from = verdict::fromLog;
    } else {
        now.right = "at once";
        now.verdict = row.isOpen && !row.withItsGroup ? verdict::untold : verdict::passed;
    }
    row.tests.push_back(now);
    addGroup(row);
    if (row.isScheduled || !row.scheduleError.empty()) {
        row.tests.push_back({"at the restart", "the replace", "is left to",
                             row.isScheduled ? "the system" : row.scheduleError,
                             !row.isScheduled ? verdict::failed
                             : row.isOpen     ? verdict::untold
                                              : verdict::passed,
                             verdict::fromLog});
    }
}

/// How many materials of the run go to each target.
std::map<std::string, int> targetsOf(const KelvarRun& run) {
    std::map<std::string, int> targets;
    for (const Material& row : run.materials) {
        ++targets[comparablePath(row.target)];
    }
    return targets;
}

} // namespace

void layOutTests(KelvarRun& run, const Knowledge& known, const Grounds& grounds,
                 const Standing& standing) {
    const std::map<std::string, int> targets = targetsOf(run);
    for (Material& row : run.materials) {
        const Planned* planned = plannedOf(row, run, known);
        const Standing::Found onDisk =
            planned == nullptr ? Standing::Found{} : standing.at(planned->path);
        row.tests.clear();
        addFilterTests(row, planned, grounds, onDisk);
        addDownload(row);
        // Of two that go to one target, the second one meets what the first one brought.
        const bool isAlone = targets.at(comparablePath(row.target)) == 1;
        addLooks(row, planned, isAlone ? onDisk : Standing::Found{});
        addReplace(row);
    }
}

} // namespace sandbox::report
