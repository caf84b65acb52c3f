#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>

#include "sandbox/platform/childprocess.h"
#include "sandbox/report/explanation.h"

// Whole runs: what explain says against what the scenario's author wrote down beforehand.

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

/// The Windows build whose client is to run, under Wine; not there for a native one.
const char* const windowsBuild = std::getenv("XSANDBOX_WINDOWS");
/// A folder with a finished run of five-channels.json.
const char* const demoRun = std::getenv("REPORT_DEMO");

Json readJson(const fs::path& file) {
    std::ifstream stream(file);
    return Json::parse(stream);
}

/// xsandbox with a folder of the test's own.
class ReportTest : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "xreport-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        run = folder / "run";
    }
    void TearDown() override {
        if (!HasFailure()) {
            fs::remove_all(folder);
        }
    }

    int xsandbox(const std::vector<std::string>& arguments) {
        const fs::path output = folder / "output.txt";
        auto child = sandbox::ChildProcess::start(XSANDBOX, arguments, folder, output);
        const int exit = child ? child->wait() : -1;
        std::ostringstream text;
        text << std::ifstream(output).rdbuf();
        said = text.str();
        return exit;
    }

    /// Plays a scenario in the test's folder.
    void play(const Json& scenario) {
        std::ofstream(folder / "scenario.json") << scenario.dump(2);
        std::vector<std::string> call{"run", (folder / "scenario.json").string(), "--folder",
                                      run.string()};
        if (windowsBuild != nullptr) {
            call.insert(call.end(), {"--windows", "--binaries", windowsBuild});
        }
        ASSERT_LT(xsandbox(call), 2) << said;
    }

    Json explained() {
        EXPECT_EQ(xsandbox({"explain", "--folder", run.string(), "--all", "--json"}), 0) << said;
        return Json::parse(said, nullptr, false);
    }

    fs::path folder;
    fs::path run;
    std::string said;
};

/// "placed" or "refused: already up to date", of one material.
std::string wordsOf(const std::string& decision, const Json& reason) {
    return decision + (reason.is_string() ? ": " + reason.get<std::string>() : "");
}

/// What the scenario expects of each material of a step.
std::map<std::string, std::string> expectedOf(const Json& scenario, const Json& phase) {
    std::map<std::string, std::string> expected;
    const Json materials = phase.at("expect").value("materials", Json::object());
    const auto take = [&](const std::string& name, const Json& goal) {
        expected[name] = wordsOf(goal.at(0), goal.size() > 2 ? goal[2] : Json());
    };
    for (const Json& material : scenario.at("platform").value("materials", Json::array())) {
        const std::string name = material.at("name");
        if (materials.contains(name) || materials.contains("*")) {
            take(name, materials.contains(name) ? materials[name] : materials["*"]);
        }
    }
    return expected;
}

void expectAsWritten(const Json& scenario, const Json& told) {
    std::size_t next = 0;
    for (const Json& phase : scenario.at("phases")) {
        if (phase.at("do") != "run") {
            continue;
        }
        ASSERT_LT(next, told.at("runs").size());
        std::map<std::string, std::string> found;
        for (const Json& row : told["runs"][next].at("materials")) {
            found[row.at("name")] = wordsOf(row.at("decision"), row.at("reason"));
        }
        for (const auto& [name, words] : expectedOf(scenario, phase)) {
            const auto row = found.find(name);
            EXPECT_EQ(row == found.end() ? "left" : row->second, words)
                << name << " in run " << next + 1;
        }
        ++next;
    }
    EXPECT_EQ(next, told["runs"].size());
}

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

TEST_F(ReportTest, ExplainsEachMaterialOfTheDemo) {
    ASSERT_NE(demoRun, nullptr);
    run = demoRun;
    const Json scenario = readJson(fs::path(SCENARIOS) / "five-channels.json");
    const Json told = explained();
    ASSERT_FALSE(told.is_discarded()) << said;
    expectAsWritten(scenario, told);
    const Json& first = told.at("runs").at(0);
    EXPECT_EQ(first.at("materials").size(), 30U);
    for (const Json& row : first.at("materials")) {
        EXPECT_GE(row.at("tests").size(), 3U) << row.at("name");
        for (const Json& test : row.at("tests")) {
            EXPECT_NE(test.at("verdict"), "untold") << row.at("name") << test;
        }
    }
    // Programs, with the reason of the one that did not start.
    std::map<std::string, std::string> programs;
    for (const Json& program : first.at("programs")) {
        programs[program.at("program").get<std::string>() + " " +
                 program.at("parameters").get<std::string>()] = program.at("outcome");
    }
    EXPECT_EQ(programs["tools\\xntool.exe --guard"],
              "not asked for: the group of m27 waits for the restart");
    EXPECT_EQ(programs["orvprotect.exe --reload"], "started");
}

TEST_F(ReportTest, ShowsOneMaterial) {
    ASSERT_NE(demoRun, nullptr);
    run = demoRun;
    const struct {
        const char* material;
        int exit;
        const char* says; ///< blanks between columns count as one
    } rows[] = {
        {"m19", 0, "system version 10.0.19045 == 10.0.22631 failed"},
        {"m20", 0, "client version 1.2.0.1500 >= 2.0.0.0 failed"},
        {"m21", 0, "client version 1.2.0.1500 < 1.2.0.1500 failed"},
        {"m06", 0, "file on disk 1.3.0.1600 > 1.4.0.100 failed"},
        {"ui\\tray.dll", 0, "m06: refused, already up to date"},
        {"m26", 0, "replace now old file leaves its place 32, in use by another process failed"},
        {"m27", 0, "group another file of it waits taken back failed"},
        {"m99", 1, "No run of this log tells of a material m99"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(xsandbox({"explain", row.material, "--folder", run.string()}), row.exit) << said;
        std::string bare;
        std::istringstream words(said);
        for (std::string word; words >> word;) {
            bare += (bare.empty() ? "" : " ") + word;
        }
        EXPECT_NE(bare.find(row.says), std::string::npos) << row.material << "\n" << said;
    }
}

TEST_F(ReportTest, ReadsALogOnItsOwn) {
    ASSERT_NE(demoRun, nullptr);
    const std::string log = (fs::path(demoRun) / "sandbox" / "plugin.log").string();
    const std::string bare = (folder / "bare.log").string();
    std::ofstream(bare) << "update plugin, kelvar, task fetch, check ... \n";
    const struct {
        std::vector<std::string> arguments;
        int exit;
        const char* says;
    } rows[] = {
        {{"explain", "--log", log, "--run", "1", "--overview"},
         0,
         "30 materials, 21 placed, 3 waiting, 6 refused"},
        {{"explain", "--log", log, "m08"}, 0, "which material it is, tells: the file's name"},
        {{"explain", "--log", bare}, 0, "the log does not tell how it ended"},
        {{"explain", "--log", bare, "--run", "9"}, 2, "the log has no run 9; it has 1"},
        {{"explain", "--log", "none.log"}, 2, "none.log: no such log"},
        {{"explain", "--folder", "none"}, 2, "holds no log of a run"},
        {{"timeline", "--log", log}, 0, "GetUpgradePacket"},
        {{"timeline", "--log", log, "--html", "none/page.html"}, 2, "cannot write none/page.html"},
        {{"timeline", "--log", bare}, 2, "so there is no timeline"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(xsandbox(row.arguments), row.exit) << said;
        EXPECT_NE(said.find(row.says), std::string::npos) << row.says << "\n" << said;
    }
}

struct FaultCase {
    const char* fault;
    const char* on;
    const char* said; ///< part of what explain says of the question or material
};

TEST_F(ReportTest, NamesEachFaultOfTheServer) {
    const FaultCase rows[] = {
        {R"({"on": "GetPacketMeta", "fault": "status", "status": 503})", "GetPacketMeta",
         "status 503"},
        {R"({"on": "GetUpgradePacket", "fault": "empty"})", "GetUpgradePacket", "an empty body"},
        {R"({"on": "GetFullPacketDiff", "fault": "refused"})", "GetFullPacketDiff",
         "the connection is reset"},
        {R"({"on": "core", "fault": "cut", "byte": 100})", "core", "the body ends at byte 100"},
        {R"({"on": "core", "fault": "status", "status": 404})", "core", "status 404"},
    };
    for (const FaultCase& row : rows) {
        Json scenario = readJson(fs::path(SCENARIOS) / "small.json");
        scenario["phases"] = Json::array({scenario["phases"][0]});
        scenario["phases"][0]["faults"] = Json::array({Json::parse(row.fault)});
        fs::remove_all(run);
        play(scenario);
        const Json told = explained();
        ASSERT_FALSE(told.is_discarded()) << said;
        ASSERT_EQ(told["runs"].size(), 1U) << row.fault;
        std::string words;
        for (const char* list : {"questions", "materials"}) {
            for (const Json& item : told["runs"][0][list]) {
                words += item["name"] == row.on && item["fault"].is_string()
                             ? item["fault"].get<std::string>()
                             : "";
            }
        }
        EXPECT_NE(words.find(row.said), std::string::npos) << row.fault << "\n" << said;
    }
}

TEST_F(ReportTest, NamesFaultsOfTheOtherChannelsToo) {
    play(readJson(fs::path(SCENARIOS) / "package-faults.json"));
    const Json told = Json::parse((xsandbox({"explain", "--folder", run.string(), "--json"}), said),
                                  nullptr, false);
    ASSERT_FALSE(told.is_discarded()) << said;
    std::size_t faults = 0;
    std::ifstream lines(run / "sandbox" / "faults.jsonl");
    for (std::string line; std::getline(lines, line); ++faults) {
        const Json fault = Json::parse(line);
        const Json words =
            fault["on"].get<std::string>() + ": " + fault["words"].get<std::string>();
        EXPECT_NE(std::find(told["faults"].begin(), told["faults"].end(), words),
                  told["faults"].end())
            << words;
    }
    EXPECT_GT(faults, 0U);
}

} // namespace
