#include "sandbox/report/filtertests.h"

#include <algorithm>

#include "sandbox/report/conditions.h"
#include "sandbox/report/verdict.h"

namespace sandbox::report {
namespace {

using Filter = Material::Filter;

/// The verdict of a filter, which the log names when it drops the material.
struct Verdict {
    std::string word;
    std::string from;
};

Verdict verdictOf(const Material& row, bool isReached, bool hasFailed) {
    if (!isReached) {
        return {verdict::notAsked, verdict::fromOrder};
    }
    // One that was only asked for has no line.
    const char* other = row.md5.empty() ? verdict::untold : verdict::passed;
    return hasFailed ? Verdict{verdict::failed, verdict::fromLog}
                     : Verdict{other, verdict::fromOrder};
}

/// A value that somebody tells, and who.
struct Value {
    std::string text;
    std::string from;
};

bool contradicts(const std::vector<Clause>& clauses, const std::string& value,
                 const std::string& word) {
    const bool holds = std::all_of(clauses.begin(), clauses.end(),
                                   [&](const Clause& clause) { return clause.holds(value); });
    return !value.empty() &&
           ((word == verdict::passed && !holds) || (word == verdict::failed && holds));
}

/// One test for each bound of a condition; the log has one verdict for all of them.
void addCondition(Material& row, const char* what, const std::vector<Clause>* clauses, Value value,
                  const Verdict& verdict) {
    if (clauses == nullptr || (clauses->empty() && verdict.word == verdict::failed)) {
        row.tests.push_back({what, "", "", "", verdict.word, verdict.from});
        return;
    }
    const std::string from = verdict::withSource(verdict.from, verdict::fromScenario);
    if (clauses->empty()) {
        row.tests.push_back({what, "no condition", "", "", verdict.word, from});
        return;
    }
    if (contradicts(*clauses, value.text, verdict.word)) {
        value = {};
    }
    for (const Clause& clause : *clauses) {
        Test test{what,         value.text,   clause.op,
                  clause.bound, verdict.word, verdict::withSource(from, value.from)};
        if (verdict.word == verdict::failed && clauses->size() > 1) {
            test.verdict = value.text.empty()         ? verdict::untold
                           : clause.holds(value.text) ? verdict::passed
                                                      : verdict::failed;
        }
        row.tests.push_back(test);
    }
}

std::vector<Clause> systemClauses(const Planned& planned) {
    // With one exact version the condition is not asked.
    return planned.osver.empty() ? clausesOf(planned.checkSys, "%sysver%")
                                 : std::vector<Clause>{{"==", planned.osver}};
}

bool isNewer(const std::string& version, const Standing::Found& found) {
    return found.file == Standing::Found::File::absent ||
           compareVersions(version, found.version.value_or("")) > 0;
}

void addFileTest(Material& row, const Standing::Found& onDisk) {
    const bool isReached = row.filter == Filter::passed || row.filter == Filter::file;
    const Verdict verdict = verdictOf(row, isReached, row.filter == Filter::file);
    Test test{"file on disk",           row.version,  ">",
              verdict::wordsOf(onDisk), verdict.word, verdict.from};
    const bool isDecided = verdict.word == verdict::passed || verdict.word == verdict::failed;
    if (isDecided && !test.right.empty() && !row.version.empty() &&
        isNewer(row.version, onDisk) != (verdict.word == verdict::passed)) {
        test.right.clear();
    }
    test.from = verdict::withSource(test.from, test.right.empty() ? "" : verdict::fromScenario);
    row.tests.push_back(test);
}

} // namespace

void addFilterTests(Material& row, const Planned* planned, const Grounds& grounds,
                    const Standing::Found& onDisk) {
    std::vector<Clause> client;
    std::vector<Clause> system;
    if (planned != nullptr) {
        client = clausesOf(planned->checkApp, "%appver%");
        system = systemClauses(*planned);
    }
    addCondition(row, "client version", planned != nullptr ? &client : nullptr,
                 {grounds.clientVersion, grounds.clientFrom},
                 verdictOf(row, true, row.filter == Filter::client));
    addCondition(row, "system version", planned != nullptr ? &system : nullptr,
                 {grounds.osVersion, grounds.osFrom},
                 verdictOf(row, row.filter != Filter::client, row.filter == Filter::system));
    addFileTest(row, onDisk);
}

} // namespace sandbox::report
