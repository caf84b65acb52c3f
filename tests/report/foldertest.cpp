#include "sandbox/report/section.h"
#include "sandbox/report/timeline.h"
#include "tests/report/runfolder.h"

// A run's folder beside its log: what it adds, and that nothing in it does harm.

namespace {

using namespace runfolder;

constexpr const char* oneRun =
    "2026-11-21 12:00:00.000 [2] [1] T::f (a.cpp:1) update plugin, kelvar, task fetch, check ... \n"
    "2026-11-21 12:00:00.100 [2] [1] T::f (a.cpp:1) update plugin, kelvar http, request: "
    "http://p/PacketV2/GetPacketMeta , data: {} \n"
    "2026-11-21 12:00:00.300 [2] [2] T::f (a.cpp:1) update plugin, kelvar, task download, download "
    "name: 0123456789abcdef0123456789abcdef , url: http://s/core-0123456789ab \n"
    "2026-11-21 12:00:00.300 [2] [2] T::f (a.cpp:1) update plugin, download task, url: "
    "http://s/core-0123456789ab \n"
    "2026-11-21 12:00:00.400 [2] [2] T::f (a.cpp:1) update plugin, kelvar, task move, move: "
    "0123456789abcdef0123456789abcdef  to  core-0123456789ab \n"
    "2026-11-21 12:00:00.500 [2] [2] T::f (a.cpp:1) update plugin, kelvar, exec: a.exe , params: "
    "--x \n"
    "2026-11-21 12:00:00.600 [2] [2] T::f (a.cpp:1) update plugin, queue, task finished, succ: 1 "
    "\n";

TEST_F(FolderTest, LaysObservationsBesideTheLog) {
    put("sandbox/plugin.log", oneRun);
    putEvents(
        R"({"kind":"process","file":"a.exe","parameters":"--x","started":true,)" + at(500) + "}\n" +
        R"({"kind":"version","path":"update\\version.dat","value":"1.3",)" + at(550) + "}\n" +
        R"({"kind":"http","phase":"answered","url":"http://p/PacketV2/GetPacketMeta",)" + at(180) +
        "}\n" + R"({"kind":"notification","type":14,"hex":"00000000312e3300",)" + at(560) + "}\n");
    put("sandbox/faults.jsonl", R"({"on":"GetPacketMeta","words":"slow","phase":1,)" + at(150) +
                                    "}\n" + R"({"on":"core","words":"cut","phase":1,)" + at(350) +
                                    "}\n");
    const Explanation told = explained();
    ASSERT_EQ(told.runs.size(), 1U);
    EXPECT_EQ(told.runs[0].programs.at(0).outcome, "started");
    EXPECT_EQ(told.runs[0].versions, std::vector<std::string>{"update\\version.dat 1.3"});
    EXPECT_EQ(told.runs[0].questions.at(0).fault, "slow");
    EXPECT_EQ(told.runs[0].materials.at(0).fault, "cut");
    std::string seen;
    for (const TimelineEvent& event : timelineOf(told).events) {
        seen += timeText(event.start, false).substr(6) + " " + event.title + ", " +
                std::to_string(event.duration()) + "\n";
    }
    EXPECT_EQ(seen, "00.100 GetPacketMeta, 80\n"
                    "00.150 GetPacketMeta: slow, 0\n"
                    "00.300 core-0123456789ab, 100\n"
                    "00.300 core-0123456789ab, 100\n"
                    "00.350 core: cut, 0\n"
                    "00.500 program a.exe , params: --x, 0\n"
                    "00.560 notification of type 14, version 1.3, 0\n"
                    "00.600 run 1 of the Kelvar channel ends: files were placed, 0\n");
}

TEST_F(FolderTest, TakesConditionsFromTheScenario) {
    put("sandbox/plugin.log", oneRun);
    put("scenario.json", R"json({
        "title": "t",
        "client": {"version": "1.5", "files": [{"path": "bin\\core.dll", "version": "1.0"}]},
        "platform": {"materials": [{
            "name": "core", "path": "bin/core.dll", "version": "2.0",
            "parameters": {"check_app": "%appver%>=\"1.0\"", "osver": "10.0.1", "dependent": "g",
                           "exec": "(%process%=\"b.exe\" %param%=\"\")"},
            "file": {"kind": "pe", "version": "2.1"}}]}})json");
    put("sandbox/run.json", R"({"scenario":")" + (root / "scenario.json").string() + "\"}");
    put("sandbox/config.json", R"({"os":{"major":10,"minor":0,"build":1}})");
    put("storage/core-0123456789ab", "");
    const Explanation told = explained();
    const Material& core = told.runs.at(0).materials.at(0);
    EXPECT_EQ(core.name + " " + core.target + " " + core.group.value_or("?"),
              "core bin\\core.dll g");
    const std::vector<std::vector<std::string>> filters{
        {"client version", "1.5", ">=", "1.0", "passed", "order of the tests, scenario"},
        {"system version", "10.0.1", "==", "10.0.1", "passed",
         "order of the tests, scenario, config"},
        {"file on disk", "2.0", ">", "1.0", "passed", "order of the tests, scenario"}};
    const auto rows = materialSection(core).rows;
    ASSERT_GE(rows.size(), filters.size());
    EXPECT_TRUE(std::equal(filters.begin(), filters.end(), rows.begin()));
    EXPECT_EQ(told.runs[0].programs.at(1).outcome, "no line tells that core asked for it");
}

TEST_F(FolderTest, IsNotHarmedByWhatItHolds) {
    const struct {
        const char* file;
        const char* content;
    } rows[] = {
        {"sandbox/run.json", "[]"},
        {"sandbox/run.json", R"({"scenario": 7})"},
        {"sandbox/run.json", R"({"scenario": "/nowhere/x.json"})"},
        {"scenario.json", "{"},
        {"scenario.json", R"({"client": [], "platform": {"materials": [1, {"name": 2}]}})"},
        {"scenario.json", R"({"client": {"versions": [1], "files": {"a": 1}}, "upgrade": 1})"},
        {"sandbox/config.json", R"({"os": {"major": "ten"}})"},
        {"sandbox/config.json", "\xff"},
        {"sandbox/faults.jsonl", "{\"on\": 1, \"phase\": \"x\", \"at\": \"y\"}\n{\n"},
        {"sandbox/events.jsonl",
         "{\"kind\": \"process\", \"at\": 1.5}\n[]\n{\"kind\": 3, \"at\": 1}\n"},
        {"sandbox/events.jsonl",
         "{\"kind\":\"log\",\"text\":\"update plugin, kelvar, task fetch, check ...\",\"at\":1}\n"
         "{\"kind\":\"process\",\"file\":\"a.exe\",\"parameters\":\"--x\",\"started\":\"yes\","
         "\"at\":9}\n"
         "{\"kind\":\"notification\",\"type\":\"x\",\"hex\":\"zz\",\"at\":9}\n"},
        {"storage/-", ""},
        {"sandbox/plugin.log", ""},
    };
    for (const auto& row : rows) {
        put("sandbox/plugin.log", oneRun);
        put("scenario.json", "{}");
        put("sandbox/run.json", R"({"scenario":")" + (root / "scenario.json").string() + "\"}");
        put(row.file, row.content);
        const Explanation told = explained();
        EXPECT_EQ(told.runs.size(), told.log.lines.empty() ? 0U : 1U) << row.file << row.content;
        if (!told.runs.empty()) {
            EXPECT_EQ(told.runs[0].materials.at(0).decision, "placed") << row.file << row.content;
            EXPECT_GE(timelineOf(told).events.size(), 4U) << row.file << row.content;
        }
    }
    fs::remove(root / "sandbox" / "plugin.log");
    EXPECT_THROW(explained(), std::runtime_error);
}

} // namespace
