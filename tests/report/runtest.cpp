#include <algorithm>

#include "tests/report/wholerun.h"

// The verbs explain and timeline, on finished runs and on logs.

namespace {

using namespace wholerun;

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
        {{"explain", "--log", bare, "--run", "0"}, 2, "not \"0\""},
        {{"explain", "--log", bare, "--run", "-1"}, 2, "not \"-1\""},
        {{"explain", "--log", "none.log"}, 2, "none.log: no such log"},
        {{"explain", "--log", demoRun}, 2, "a folder, not a log; --folder reads"},
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
        play(scenario, 1);
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
