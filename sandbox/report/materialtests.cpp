#include "sandbox/report/materialtests.h"

#include "sandbox/common/clientpath.h"
#include "sandbox/report/conditions.h"

namespace sandbox::report {
namespace {

using Filter = Material::Filter;
using Fetch = Material::Fetch;
using Try = Material::Try;

constexpr const char* fromLog = "log";
constexpr const char* fromOrder = "order of the tests";
constexpr const char* passed = "passed";
constexpr const char* failed = "failed";
constexpr const char* notAsked = "not asked";

/// The verdict of a test that the log names when it fails.
struct Verdict {
    std::string word;
    std::string from;
};

Verdict verdictOf(bool isReached, bool hasFailed, bool isSeen) {
    if (!isReached) {
        return {notAsked, fromOrder};
    }
    return hasFailed ? Verdict{failed, fromLog} : Verdict{isSeen ? passed : "untold", fromOrder};
}

std::string withSources(const std::string& from, const std::string& more) {
    return more.empty() || from.find(more) != std::string::npos ? from : from + ", " + more;
}

/// Whether the log has a line on the row: one that was only asked for has none.
bool isSeen(const Material& row) {
    return !row.md5.empty();
}

std::string versionAt(const Grounds& grounds, const std::string& path) {
    const auto found = grounds.versions.find(comparablePath(path));
    return found == grounds.versions.end() ? "" : found->second;
}

bool isKnownAt(const Grounds& grounds, const std::string& path) {
    return grounds.versions.count(comparablePath(path)) != 0;
}

/// One test for each bound of a condition; the log has one verdict for all of them.
void addCondition(Material& row, const char* what, const Planned* planned,
                  const std::vector<Clause>& clauses, const std::string& value,
                  const std::string& valueFrom, const Verdict& verdict) {
    if (planned == nullptr) {
        row.tests.push_back({what, "", "", "", verdict.word, verdict.from});
        return;
    }
    if (clauses.empty()) {
        row.tests.push_back(
            {what, "no condition", "", "", verdict.word, withSources(verdict.from, "scenario")});
        return;
    }
    for (const Clause& clause : clauses) {
        Test test{what,         value,
                  clause.op,    clause.bound,
                  verdict.word, withSources(withSources(verdict.from, "scenario"), valueFrom)};
        if (verdict.word == failed && clauses.size() > 1) {
            test.verdict = value.empty() ? "untold" : clause.holds(value) ? passed : failed;
        }
        row.tests.push_back(test);
    }
}

void addFilters(Material& row, const Planned* planned, const Grounds& grounds) {
    addCondition(row, "client version", planned,
                 planned ? clausesOf(planned->checkApp, "%appver%") : std::vector<Clause>{},
                 grounds.clientVersion, grounds.clientFrom,
                 verdictOf(true, row.filter == Filter::client, isSeen(row)));
    std::vector<Clause> system;
    if (planned && !planned->osver.empty()) {
        system = {{"==", planned->osver}}; // then the condition is not asked
    } else if (planned) {
        system = clausesOf(planned->checkSys, "%sysver%");
    }
    addCondition(
        row, "system version", planned, system, grounds.osVersion, grounds.osFrom,
        verdictOf(row.filter != Filter::client, row.filter == Filter::system, isSeen(row)));
    const bool isReached = row.filter == Filter::passed || row.filter == Filter::file;
    Test file{"file on disk", row.version, ">", "", "", ""};
    const Verdict verdict = verdictOf(isReached, row.filter == Filter::file, isSeen(row));
    file.verdict = verdict.word;
    file.from = verdict.from;
    if (isKnownAt(grounds, row.target)) {
        file.right = versionAt(grounds, row.target);
        file.right = file.right.empty() ? "no version" : file.right;
        file.from = withSources(file.from, "scenario");
    } else if (planned != nullptr && row.filter != Filter::file) {
        file.right = "no such file";
        file.from = withSources(file.from, "scenario");
    }
    row.tests.push_back(file);
}

void addDownload(Material& row) {
    Test test{"download", row.url, "", "", passed, fromLog};
    switch (row.fetch) {
    case Fetch::none:
        return;
    case Fetch::badName:
        test = {"hash", row.md5 + " / " + row.detail[0], "is", "a plain name", failed, fromLog};
        break;
    case Fetch::there:
        test.left = "reused: it lay in the update folder";
        break;
    case Fetch::failed:
        test.right = row.fetchError;
        test.verdict = failed;
        break;
    default:
        break;
    }
    if (!row.fault.empty()) {
        test.right += (test.right.empty() ? "" : "; ") + row.fault;
        test.from = withSources(test.from, "faults");
    }
    row.tests.push_back(test);
}

/// The looks at a file ahead of its move, each with what it compares.
struct Look {
    Try fails;
    Test test;
};

std::vector<Look> looksOf(const Material& row, const Planned* planned, const Grounds& grounds) {
    const bool isVersion = row.tried == Try::version;
    const bool isHash = row.tried == Try::hash;
    std::string source = isVersion ? row.detail[0] : "";
    std::string target = isVersion ? row.detail[1] : "";
    if (!isVersion && planned != nullptr) {
        source = planned->fileVersion.empty() ? row.version : planned->fileVersion;
        target = isKnownAt(grounds, row.target) ? versionAt(grounds, row.target) : "no such file";
        target = target.empty() ? "no version" : target;
    }
    const std::string member = row.tried == Try::cabinet ? row.detail[0] : "";
    return {
        {Try::badName, {"names", row.md5, "is", "a plain name", "", ""}},
        {Try::badPath, {"target", row.target, "below", "the client's folder", "", ""}},
        {Try::isFolder, {"target", row.target, "is", "no folder", "", ""}},
        {Try::cabinet,
         {"cabinet", member.empty() ? "if it is one" : "its member " + member, "expands into",
          "the update folder", "", ""}},
        {Try::missing,
         {"file", row.tried == Try::missing ? row.detail[0] : "the file to place", "is in",
          "the update folder", "", ""}},
        {Try::hash, {"hash", isHash ? row.detail[1] : "", "==", "", "", ""}},
        {Try::version, {"version", source, ">", target, "", ""}},
    };
}

void addLooks(Material& row, const Planned* planned, const Grounds& grounds) {
    if (row.tried == Try::none) {
        return;
    }
    bool isOver = false;
    for (Look look : looksOf(row, planned, grounds)) {
        const bool hasFailed = look.fails == row.tried;
        const bool isUntold = row.tried == Try::untold;
        look.test.verdict = isOver ? notAsked : hasFailed ? failed : isUntold ? "untold" : passed;
        look.test.from = hasFailed ? fromLog : fromOrder;
        const bool isPlanned = planned != nullptr && look.fails == Try::version && !hasFailed;
        look.test.from = withSources(look.test.from, isPlanned ? "scenario" : "");
        isOver = isOver || hasFailed;
        row.tests.push_back(look.test);
    }
}

void addReplace(Material& row) {
    if (row.tried != Try::moved) {
        return;
    }
    if (!row.lockedBy.empty()) {
        row.tests.push_back(
            {"replace now", "old file", "leaves its place", row.lockedBy, failed, fromLog});
    } else if (!row.failedBy.empty()) {
        row.tests.push_back(
            {"replace now", "new file", "takes its place", row.failedBy, failed, fromLog});
    } else {
        row.tests.push_back(
            {"replace now", "new file", "takes its place", "at once", passed, fromLog});
    }
    if (row.withItsGroup) {
        row.tests.push_back(
            {"group", "another file of it", "waits", "taken back", failed, fromLog});
    } else if (row.reason == "its group was taken back") {
        row.tests.push_back({"group", "another file of it", "was refused", "taken back", failed,
                             row.group ? "log, scenario" : "log, order of the moves"});
    }
    if (row.isScheduled || !row.scheduleError.empty()) {
        row.tests.push_back({"at the restart", "the replace", "is left to",
                             row.isScheduled ? "the system" : row.scheduleError,
                             row.isScheduled ? passed : failed, fromLog});
    }
}

} // namespace

void layOutTests(Material& row, const Knowledge& known, const Grounds& grounds) {
    const Planned* planned = known.planned(row.name);
    row.tests.clear();
    addFilters(row, planned, grounds);
    addDownload(row);
    addLooks(row, planned, grounds);
    addReplace(row);
}

} // namespace sandbox::report
