#include <algorithm>
#include <fstream>
#include <gtest/gtest.h>

#include "sandbox/report/axis.h"
#include "sandbox/report/channels.h"
#include "sandbox/report/conditions.h"
#include "sandbox/report/logtime.h"
#include "sandbox/report/page.h"
#include "sandbox/report/programs.h"
#include "sandbox/report/saying.h"

// The small parts that a report is made of.

namespace {

using namespace sandbox::report;

TEST(LogTimeTest, IsFoundInFrontOfALine) {
    const struct {
        const char* prefix;
        const char* time; ///< empty: none
    } rows[] = {
        {"2026-11-21 20:12:54.789 [2] [10759] ", "2026-11-21 20:12:54.789"},
        {"[2026/11/21T20:12:54,7] ", "2026-11-21 20:12:54.700"},
        {"I 00:00:01 ", "00:00:01.000"},
        {"2026-13-21 20:12:54.789 ", "20:12:54.789"},
        {"20:12 ", ""},
        {"", ""},
    };
    for (const auto& row : rows) {
        const auto found = findTime(row.prefix);
        EXPECT_EQ(found ? timeText(found->milliseconds, found->hasDate) : "", row.time)
            << row.prefix;
    }
}

TEST(LogLineTest, PassesMidnight) {
    const Log log = readLog("23:59:59.900 update plugin, queue, run ...\n"
                            "00:00:00.100 update plugin, queue, run end.\n");
    ASSERT_EQ(log.lines.size(), 2U);
    EXPECT_EQ(*log.lines[1].at - *log.lines[0].at, 200);
}

TEST(LogLineTest, RepairsBytesThatAreNoText) {
    EXPECT_EQ(validUtf8("a\xff\xc3\xa4\xe2\x82"), "a\xEF\xBF\xBD\xc3\xa4\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(validUtf8("\xed\xa0\x80"), "\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD");
}

TEST(ConditionTest, KeepsWhatAClientKeeps) {
    const struct {
        const char* expression;
        const char* version;
        std::size_t clauses;
        bool holds; ///< all of them
    } rows[] = {
        {R"(%v%>="1.0"&&%v%<"2.0")", "1.5", 2, true},
        {R"(%v%>="1.0"&&%v%<"2.0")", "2.0", 2, false},
        {R"(%v%>"1.0")", "1.0.0", 1, true},
        {R"(%v% >= "1.0")", "0.1", 0, true},
        {R"(%v%=="1.0"&&%v%<="2.0")", "1.7", 1, true}, // the later one of a side counts
        {R"(%v%>="1.0&&%v%<"2.0")", "0.5", 1, true},
        {R"(%v%=="")", "1.0", 0, true}, // nothing but empty bounds is no condition
        {R"(%v%>="0.5"&&%v%=="")", "1.0", 2, false},
        {"", "1.0", 0, true},
    };
    for (const auto& row : rows) {
        const std::vector<Clause> clauses = clausesOf(row.expression, "%v%");
        EXPECT_EQ(clauses.size(), row.clauses) << row.expression;
        bool all = true;
        for (const Clause& clause : clauses) {
            all = all && clause.holds(row.version);
        }
        EXPECT_EQ(all, row.holds) << row.expression << " for " << row.version;
    }
}

TEST(ProgramTest, ReadsExecutionTexts) {
    const auto entries =
        execEntries(R"((%process%="A.EXE" %param%="--x")&&(%process%="b.exe")&&(broken)");
    ASSERT_EQ(entries.size(), 3U);
    EXPECT_EQ(entries[0].program + " " + entries[0].parameters, "a.exe --x");
    EXPECT_EQ(entries[1].program + entries[1].parameters, "b.exe");
    EXPECT_EQ(entries[2].program, "");
}

// Lines that tell no decision: begins of steps, and what another line says as well.
constexpr std::string_view passedOver[] = {
    "update plugin, queue, add task",
    "update plugin, queue, run",
    "update plugin, isLogined",
    "update plugin, can restart tray, xnguardbase nil.",
    "updatekelvar, XBatchGetMaterialMetaData",
    "update plugin, kelvar, check diff and update, count:",
    "update plugin, kelvar, updateItem",
    "update plugin, pkg, check update ...",
    "update plugin, pkg, task condition, check ...",
    "update plugin, pkg, task check, request:",
    "update plugin, pkg, task check, succ:",
    "update plugin, pkg, task check, check ...isAutoCheck:",
    "update plugin, pkg, task install, can't install",
    "update plugin, file, task check ...",
    "update plugin, file, task check, local list null .",
    "update plugin, file, task download ...",
    "update plugin, file, task download, list null.",
    "update plugin, other, check update ...",
    "update plugin, other, task condition, can't check, so ignore",
    "update plugin, statistic, check update ...",
};

TEST(LogReferenceTest, HasNoLineThatIsUnknownHere) {
    std::ifstream reference(std::string(DOCS) + "/log-reference.md");
    std::size_t lines = 0;
    for (std::string row; std::getline(reference, row);) {
        const std::size_t end = row.find("` |", 3);
        if (row.compare(0, 3, "| `") != 0 || end == std::string::npos) {
            continue;
        }
        const std::string text = row.substr(3, end - 3);
        const auto isIt = [&](std::string_view line) {
            return text.compare(0, line.size(), line) == 0;
        };
        const bool isKnown = sayingOf(text) ||
                             !channelSteps(readLog(text + " \n"), {}, 0, 10).empty() ||
                             std::any_of(std::begin(passedOver), std::end(passedOver), isIt);
        EXPECT_TRUE(isKnown) << text;
        ++lines;
    }
    EXPECT_GT(lines, 100U);
}

TEST(ChannelTest, FoldsWhatComesOnEachTick) {
    std::string text;
    for (int i = 0; i < 3; ++i) {
        text += "[2] [7] update plugin, statistic, check update ...  \n"
                "[2] [7] update plugin, statistic, time ignore ...  \n"
                "[2] [9] update plugin, pkg, task condition, check times fail, so ignore. \n";
    }
    text += "[2] [7] update plugin, statistic, check update ...  \n"
            "[2] [7] update plugin, pkg, check update ... \n";
    std::string steps;
    for (const ChannelStep& step : channelSteps(readLog(text), {}, 0, 1000)) {
        steps += step.channel + " " + step.words + " " + std::to_string(step.times) + "\n";
    }
    EXPECT_EQ(
        steps,
        "package not yet: the time gate was shut 3\n"
        "statistic not yet: the time gate was shut 3\nstatistic a report was handed over 1\n");
}

constexpr const char* timedLog =
    "10:00:00.000 [2] [1] update plugin, pkg, check update ...\n"
    "10:00:00.010 [2] [2] update plugin, kelvar, task fetch, check ...\n"
    "10:00:00.020 [2] [2] update plugin, kelvar http, request: http://p/GetUpgradePacket , data: "
    "{}\n"
    "10:00:00.070 [2] [3] update plugin, kelvar http, request: http://p/GetPacketMeta , data: {}\n"
    "10:00:00.080 [2] [3] update plugin, kelvar, task download, download name: aa , url: "
    "http://s/<&>\n"
    "10:00:00.080 [2] [3] update plugin, download task, url: http://s/<&>\n"
    "10:00:00.090 [2] [1] update plugin, pkg, check update ...\n"
    "10:00:00.180 [2] [3] update plugin, download task, perform err: 18\n"
    "10:01:00.000 [2] [3] update plugin, move task, move all file, all: 1 , depends: 0 , non "
    "depend: 1\n"
    "10:01:00.040 [2] [3] update plugin, kelvar, task move, move: aa  to  f\n"
    "10:01:00.050 [2] [3] update plugin, move task, move dst to temp error, code: 32\n";

TEST(TimelineTest, MakesBarsOfALogAlone) {
    std::string bars;
    for (const TimelineEvent& event : timelineOf(explainText(timedLog)).events) {
        if (event.isBar()) {
            bars += std::string(nameOf(event.kind)) + " " + event.title + ", " +
                    titleOf(event.lane) + ": " + durationText(event.duration()) +
                    (event.hasFailed ? " failed\n" : "\n");
        }
    }
    EXPECT_EQ(bars, "request GetUpgradePacket, Workers: 50 ms\n"
                    "request GetPacketMeta, Delivery thread: 10 ms\n"
                    "transfer <&>, Delivery thread: 100 ms failed\n"
                    "move f, Delivery thread: 50 ms\n");
}

// The answer that the first process still waited for is not that of the next one.
TEST(TimelineTest, LeavesOpenWhatAProcessDidNotSeeTheEndOf) {
    const std::string log =
        "10:00:00.000 [2] [1] update plugin, kelvar, task fetch, check ...\n"
        "10:00:00.010 [2] [1] update plugin, kelvar http, request: http://p/A , data: {}\n"
        "10:00:00.020 [2] [4] update plugin, file, task check, request: {}\n"
        "10:05:00.000 [2] [2] update plugin, kelvar, task fetch, check ...\n"
        "10:05:00.010 [2] [2] update plugin, kelvar http, request: http://p/A , data: {}\n"
        "10:05:00.040 [2] [3] update plugin, kelvar http, request: http://p/B , data: {}\n"
        "10:05:00.050 [2] [3] update plugin, kelvar, task download, check ... \n"
        "10:05:00.060 [2] [3] update plugin, download task, url: http://s/f\n"
        "10:09:00.000 [2] [2] update plugin, kelvar, task fetch, check ...\n"
        "10:09:00.100 [2] [3] update plugin, kelvar http, request: http://p/A , data: {}\n";
    std::string bars;
    for (const TimelineEvent& event : timelineOf(explainText(log)).events) {
        bars += event.isBar() ? event.title + (event.isOpen ? " open " : " ") +
                                    std::to_string(event.duration()) + "\n"
                              : "";
    }
    EXPECT_EQ(bars, "A open 299990\ncheck of the data files open 540080\nA 30\nB 10\n"
                    "f open 239940\nA open 0\n");
}

TEST(TimelineTest, RefusesALogWithoutTimes) {
    EXPECT_THROW(timelineOf(explainText("update plugin, queue, run ...\n")), std::runtime_error);
    EXPECT_THROW(timelineOf(explainText("")), std::runtime_error);
}

TEST(AxisTest, CutsWhereNothingHappens) {
    const Timeline timeline = timelineOf(explainText(timedLog));
    const Axis axis(timeline, 1000);
    ASSERT_EQ(axis.all().size(), 3U);
    EXPECT_TRUE(axis.all()[1].isCut);
    double before = -1;
    for (std::int64_t time = timeline.begin; time <= timeline.end; time += 5) {
        EXPECT_GE(axis.at(time), before);
        before = axis.at(time);
    }
    EXPECT_LE(before, axis.end());
}

TEST(PageTest, EscapesWhatALogHolds) {
    const Explanation told = explainText(timedLog);
    const std::string page = pageOf(timelineOf(told), told, "<script>\"x\"</script>");
    EXPECT_EQ(page.find("<script"), std::string::npos);
    EXPECT_EQ(page.find("<&>"), std::string::npos);
    EXPECT_NE(page.find("&lt;&amp;&gt;"), std::string::npos);
}

} // namespace
