#include <algorithm>

#include "sandbox/report/explanation.h"
#include "tests/report/wholerun.h"

// What explain says of whole runs, against what the scenario's author expects.

namespace {

using namespace wholerun;

/// By run and hash, in order: what the log says of each material.
std::map<std::string, std::vector<std::string>> decisionsOf(const std::string& log) {
    std::map<std::string, std::vector<std::string>> decisions;
    for (const sandbox::report::KelvarRun& run : sandbox::report::explainText(log).runs) {
        for (const sandbox::report::Material& row : run.materials) {
            decisions[std::to_string(run.number) + " " + row.md5].push_back(row.decision);
        }
    }
    return decisions;
}

/// What a poorer log says of a material is the same, or that it does not tell.
void expectNoContradiction(const std::string& whole, const std::string& poorer,
                           const std::string& what) {
    const auto told = decisionsOf(whole);
    for (const auto& [key, decisions] : decisionsOf(poorer)) {
        const auto same = told.find(key);
        for (std::size_t i = 0; same != told.end() && i < decisions.size(); ++i) {
            const bool agrees = decisions[i] == "untold" || i >= same->second.size() ||
                                decisions[i] == same->second[i];
            EXPECT_TRUE(agrees) << what << ", " << key << ": " << decisions[i] << " in place of "
                                << same->second[i];
        }
    }
}

class WrittenTest : public ReportTest, public testing::WithParamInterface<const char*> {};

TEST_P(WrittenTest, IsExplainedAsItsAuthorExpects) {
    const Json scenario = readJson(fs::path(SCENARIOS) / (std::string(GetParam()) + ".json"));
    play(scenario);
    expectAsWritten(scenario, explained());
    std::ostringstream log;
    log << std::ifstream(run / "sandbox" / "plugin.log").rdbuf();
    const std::string whole = log.str();
    std::string bare;
    for (std::size_t at = 0; at < whole.size();) {
        const std::size_t end = whole.find('\n', at) + 1;
        const std::string line = whole.substr(at, end - at);
        if (line.find("kelvar, task move") != line.npos || line.find("move task") != line.npos) {
            expectNoContradiction(whole, whole.substr(0, end),
                                  "cut behind byte " + std::to_string(end));
        }
        const std::size_t text = whole.find("update", whole.find(") ", at));
        bare += whole.substr(text, end - text);
        at = end;
    }
    expectNoContradiction(whole, bare, "without times and threads");
}

std::string nameOf(const testing::TestParamInfo<const char*>& row) {
    std::string name = row.param;
    std::replace(name.begin(), name.end(), '-', '_');
    return name;
}

INSTANTIATE_TEST_SUITE_P(Report, WrittenTest,
                         testing::Values("small", "group-waiting", "group-refused", "hostile",
                                         "broken-transfer", "rollback", "half-failed", "cabinets",
                                         "ten-versions-behind"),
                         nameOf);

} // namespace
