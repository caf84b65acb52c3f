#include <cstdint>
#include <gtest/gtest.h>

#include "sandbox/report/explanation.h"
#include "sandbox/report/section.h"

// Logs as people send them: cut, mixed, with other things in front of the plug-in's text.

namespace {

using namespace sandbox::report;

#define KELVAR "update plugin, kelvar, "
#define A "aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa"
#define B "bbbbbbbbbbbbbbbbbbbbbbbbbbbbbbbb"
#define C "cccccccccccccccccccccccccccccccc"
#define D "dddddddddddddddddddddddddddddddd"
#define FETCH(md5, id)                                                                             \
    KELVAR "task download, download name: " md5 " , url: http://s/" id " \n"                       \
           "update plugin, download task, url: http://s/" id " \n"
#define MOVE(md5, id) KELVAR "task move, move: " md5 "  to  " id " \n"
#define NEWER_STANDS(md5, id)                                                                      \
    KELVAR "needMove, ver err, srcfile ver: 1.2 , dstfile ver: 1.3 \n" KELVAR                      \
           "task move, not need move: " md5 "  to  " id " \n"
#define ALL(rows, groups, free)                                                                    \
    "update plugin, move task, move all file, all: " rows " , depends: " groups                    \
    " , non depend: " free " \n"
#define ENDS(succ)                                                                                 \
    "update plugin, update padding, padding count: 0 , succ count: 1 \n"                           \
    "update plugin, queue, task finished, succ: " succ " \n"
#define BEGIN KELVAR "task fetch, check ... \n"
#define KEY(name)                                                                                  \
    R"({"key":{"material_id":{"id":"/m/)" name R"(","module_id":{"id":"/x"}},"ver":"1.3"}})"
#define ASKS(keys)                                                                                 \
    "update plugin, kelvar http, request: http://p/MaterialV2/BatchGetMaterialMeta "               \
    ", data: {\"keys\":[" keys "]}\n \n"
#define FETCHED_ALL FETCH(A, "a") FETCH(B, "b") FETCH(C, "c") FETCH(D, "d")
#define PADDING "update plugin, move task, set peeding : C:\\x\\"

/// A run in one line: "1: aaaa placed; bbbb refused (already up to date) | why it ended".
std::string summaryOf(const Explanation& told) {
    std::string text;
    for (const KelvarRun& run : told.runs) {
        text += (text.empty() ? "" : "\n") + std::to_string(run.number) + ": ";
        for (const std::size_t at : run.order) {
            const Material& row = run.materials[at];
            text += (row.id.empty() ? row.md5.substr(0, 4) : row.id) + " " + row.decision +
                    (row.reason.empty() ? "" : " (" + row.reason + ")") + "; ";
        }
        text += "| " + run.endWords;
    }
    return text;
}

struct FieldLog {
    const char* name;
    std::string log;
    const char* summary;
};

class FieldLogTest : public testing::TestWithParam<FieldLog> {};

TEST_P(FieldLogTest, IsTold) {
    EXPECT_EQ(summaryOf(explainText(GetParam().log)), GetParam().summary);
}

std::string nameOf(const testing::TestParamInfo<FieldLog>& row) {
    return row.param.name;
}

INSTANTIATE_TEST_SUITE_P(
    Damaged, FieldLogTest,
    testing::Values(
        FieldLog{"Empty", "", ""}, FieldLog{"OfOthers", "12:00:00 something else\n\n", ""},
        FieldLog{"LineEndsOfWindows",
                 "20:12:54,789 INFO tid=0x1a update plugin, kelvar, task fetch, check ...\r\n"
                 "20:12:54,790 INFO tid=0x1b " KELVAR "task download, have local file: " A " \r\n"
                 "20:12:54,791 INFO tid=0x1b " MOVE(
                     A, "a") "20:12:54,792 INFO tid=0x1b "
                             "update plugin, queue, task finished, succ: 1 \r\n",
                 "1: aaaa placed; | files were placed"},
        FieldLog{"BeginsInMidRun", MOVE(A, "a") ENDS("1"), "1: aaaa placed; | files were placed"},
        FieldLog{"CutInATransfer", BEGIN FETCH(A, "a") "update plugin, kelvar, task down",
                 "1: aaaa untold; | the log does not tell how it ended"},
        FieldLog{"CutInAMove", BEGIN FETCH(A, "a") ALL("1", "0", "1") MOVE(A, "a"),
                 "1: aaaa untold; | the log does not tell how it ended"},
        FieldLog{"TwoRunsAndAShutGate",
                 BEGIN FETCH(A, "a") "update plugin, download task, perform err: 18 \n"
                                     "update plugin, queue, task finished, succ: 0 \n" KELVAR
                                     "task condition, check ...  \n" KELVAR
                                     "task condition, check times fail, so ignore. \n"
                                     "update plugin, queue, task finished, succ: 0 \n" BEGIN FETCH(
                                         A, "a") ALL("1", "0", "1") MOVE(A, "a") ENDS("1"),
                 "1: aaaa refused (download failed); | nothing was moved: not every file arrived\n"
                 "2: aaaa placed; | files were placed"},
        FieldLog{
            "NoUtf8", BEGIN KELVAR "task move, bad path: \xff\xfe\\x.dll , md5: " A " \n" ENDS("0"),
            "1: aaaa refused (target outside the client); | nothing was placed: every file was "
            "refused"},
        FieldLog{"OthersBetween",
                 BEGIN FETCH(
                     A, "a") "update plugin, pkg, check update ... \n"
                             "update plugin, pkg, task condition, check times fail, so ignore. \n"
                             "update plugin, queue, task finished, succ: 0 \n" FETCH(B, "b")
                                 MOVE(A, "a") MOVE(B, "b") ENDS("1"),
                 "1: aaaa placed; bbbb placed; | files were placed"},
        FieldLog{"AnEndOfAnotherTakenForOurs", // without threads the line before decides
                 BEGIN FETCH(A, "a") "update plugin, queue, task finished, succ: 0 \n" FETCH(B, "b")
                     MOVE(A, "a") MOVE(B, "b") ENDS("1"),
                 "1: aaaa placed; bbbb placed; | files were placed"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Ended, FieldLogTest,
    testing::Values(
        FieldLog{"WithoutAddress", BEGIN KELVAR "task fetch, upgradePacketData nil . \n",
                 "1: | no address of the update platform"},
        FieldLog{
            "ByAStatus",
            BEGIN
            "update plugin, kelvar http, request: http://p/PacketV2/GetPacketMeta , data: {}\n"
            "update plugin, kelvar http, response error: 0 ,code: 503 \n" KELVAR
            "task fetch, getPacketMeta nil . \nupdate plugin, queue, task finished, succ: 0 \n",
            "1: | GetPacketMeta was answered with status 503"},
        FieldLog{
            "ByAWrongNumber",
            BEGIN ASKS(KEY("a")) KELVAR "fetch material meta, addr: http://s \n" KELVAR
                                        "task fetch, batchGetMaterialMetaData nil . \n",
            "1: /m/a left; | BatchGetMaterialMeta was answered for another number of materials "
            "than asked"},
        FieldLog{"WithoutAnswer", BEGIN ASKS(KEY("a")),
                 "1: /m/a untold; | the log shows no answer to BatchGetMaterialMeta"},
        FieldLog{
            "ByAWindow",
            BEGIN KELVAR
            "task download, have local file: " A " \n" KELVAR
            "task move, check ...\nupdate plugin, can restart tray, settingui is exist. \n" KELVAR
            "task move, can't move .  \nupdate plugin, queue, task finished, succ: 0 \n",
            "1: aaaa left; | nothing was moved: the window \"settingui\" of the client was open"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Named, FieldLogTest,
    testing::Values(FieldLog{"ByTheirOrder",
                             BEGIN ASKS(KEY("a") "," KEY("b")) FETCH(A, "x1") FETCH(B, "x2")
                                 ALL("2", "0", "2") MOVE(A, "x1") MOVE(B, "x2") ENDS("1"),
                             "1: /m/a placed; /m/b placed; | files were placed"},
                    FieldLog{
                        "NotWhereTheOrderIsOpen",
                        BEGIN ASKS(KEY("a") "," KEY("b")) KELVAR
                        "task fetch, filter file ver faild, name: " A " \n" FETCH(B, "x2")
                            ALL("1", "0", "1") MOVE(B, "x2") ENDS("1"),
                        "1: aaaa refused (already up to date); bbbb placed; | files were placed"}),
    nameOf);

INSTANTIATE_TEST_SUITE_P(
    Groups, FieldLogTest,
    testing::Values(
        FieldLog{"OneIsTakenBack",
                 BEGIN FETCHED_ALL ALL("4", "1", "1") MOVE(A, "a") MOVE(B, "b") NEWER_STANDS(C, "c")
                     ENDS("1"),
                 "1: aaaa placed; bbbb refused (its group was taken back); cccc refused (not newer "
                 "than what stands); dddd refused (not tried, its group had failed); | files were "
                 "placed"},
        FieldLog{"LimitsByTheOrder", // d, then b: a step back is the only limit there is
                 BEGIN FETCHED_ALL ALL("4", "2", "0") MOVE(A, "a") MOVE(D, "d") MOVE(B, "b")
                     NEWER_STANDS(C, "c") ENDS("1"),
                 "1: aaaa placed; bbbb refused (its group was taken back); cccc refused (not newer "
                 "than what stands); dddd placed; | files were placed"},
        FieldLog{"LimitsUntold",
                 BEGIN FETCHED_ALL ALL("4", "2", "0") MOVE(A, "a") MOVE(B, "b") NEWER_STANDS(C, "c")
                     ENDS("1"),
                 "1: aaaa untold; bbbb untold; cccc refused (not newer than what stands); dddd "
                 "refused (not tried, its group had failed); | files were placed"},
        FieldLog{
            "OneWaits",
            BEGIN FETCHED_ALL ALL("4", "1", "1") MOVE(A, "a") MOVE(B, "b")
                MOVE(C, "c") "update plugin, move task, move dst to temp error, code: 32 \n" PADDING
                             "c.dll \n" MOVE(D, "d") PADDING "b.dll \n" PADDING
                                                             "d.dll \n" ENDS("1"),
            "1: aaaa placed; bbbb waiting; cccc waiting; dddd waiting; | files were placed or "
            "left to the restart"},
        FieldLog{"OneStaysThatCannotBeTakenBack",
                 BEGIN FETCHED_ALL ALL("4", "1", "1") MOVE(A, "a") MOVE(B, "b") NEWER_STANDS(
                     C, "c") "update plugin, move task, rollback 1 error, code: 5 \n" ENDS("1"),
                 "1: aaaa placed; bbbb placed; cccc refused (not newer than what stands); dddd "
                 "refused (not tried, its group had failed); | files were placed"}),
    nameOf);

struct Refusal {
    const char* lines;
    const char* reason;
};

TEST(FieldLogTests, GiveTheReasonOfEachRefusal) {
    const Refusal rows[] = {
        {KELVAR "task fetch, filter app ver faild, name: " A " \n", "for another client version"},
        {KELVAR "task fetch, filter os ver faild, name: " A " \n", "for another system version"},
        {KELVAR "task fetch, filter file ver faild, name: " A " \n", "already up to date"},
        {KELVAR "task download, bad name, md5: ..\\" A " , file md5: x \n",
         "hash is no plain name"},
        {KELVAR "task download, download name: " A " , url:  \n"
                "update plugin, download task, param err, url:  \n",
         "download failed"},
        {FETCH(A, "a") "update plugin, download task, open err, path C:\\x \n", "download failed"},
        {FETCH(A, "a") "update plugin, download task, perform err: 56 \n", "download failed"},
        {FETCH(A, "a") KELVAR "task move, bad name, md5: " A " , file md5:  \n",
         "hash is no plain name"},
        {FETCH(A, "a") KELVAR "task move, bad path: C:\\a , md5: b , md5: " A " \n",
         "target outside the client"},
        {FETCH(A, "a") KELVAR "task move, target is a folder: bin , md5: " A " \n",
         "target is a folder"},
        {FETCH(A, "a") KELVAR "task premove, bad member: ..\\x , cabinet: " A " \n" KELVAR
                              "task premove, error: " A "  to  a \n",
         "cabinet does not expand"},
        {FETCH(A, "a") KELVAR "needMove, src not exist: C:\\u\\x \n" KELVAR
                              "task move, not need move: " A "  to  a \n",
         "file is missing in its cabinet"},
        {FETCH(A, "a") KELVAR "needMove, md5 diff, meta.fileMd5: C:\\u\\x , file md5: " B
                              " \n" KELVAR "task move, not need move: " A "  to  a \n",
         "content is not the announced one"},
        {FETCH(A, "a") NEWER_STANDS(A, "a"), "not newer than what stands"},
        {FETCH(A, "a") KELVAR "task move, not need move: " A "  to  a \n",
         "the log does not tell why"},
        {FETCH(A, "a") MOVE(A, "a") "update plugin, move task, move src to dst error, code: 5 \n",
         "cannot be put in place"},
        {FETCH(A, "a")
             MOVE(A, "a") "update plugin, move task, move dst to temp error, code: 32 \n" PADDING
                          "a \nupdate plugin, move task, peeding src to dst error, code: 112 \n",
         "cannot be left to the restart"},
    };
    for (const Refusal& row : rows) {
        const Explanation told = explainText(BEGIN + std::string(row.lines) + ENDS("0"));
        ASSERT_EQ(told.runs.size(), 1U) << row.lines;
        ASSERT_EQ(told.runs[0].materials.size(), 1U) << row.lines;
        const Material& refused = told.runs[0].materials[0];
        EXPECT_EQ(refused.decision + ": " + refused.reason, std::string("refused: ") + row.reason);
        std::size_t failed = 0;
        for (const auto& test : refused.tests) {
            failed += test.verdict == "failed" ? 1U : 0U;
        }
        EXPECT_TRUE(failed > 0 || refused.tried == Material::Try::untold) << row.lines;
    }
}

// What the log does not tell is not made up.
TEST(FieldLogTests, LeaveOpenWhatIsNotTold) {
    const Explanation told =
        explainText(BEGIN KELVAR "task fetch, filter os ver faild, name: " A " \n" KELVAR
                                 "needMove, ver err, srcfile ver: 1.2 , dstfile ver: 1.3 \n" KELVAR
                                 "task move, not need move: " B "  to  b \n" ENDS("0"));
    ASSERT_EQ(told.runs.size(), 1U);
    const Section dropped = materialSection(told.runs[0].materials[0]);
    const std::vector<std::vector<std::string>> filters{
        {"client version", "?", "", "?", "passed", "order of the tests"},
        {"system version", "?", "", "?", "failed", "log"},
        {"file on disk", "?", ">", "?", "not asked", "order of the tests"}};
    EXPECT_EQ(dropped.rows, filters);
    const std::vector<std::string> version{"version", "1.2", ">", "1.3", "failed", "log"};
    EXPECT_EQ(materialSection(told.runs[0].materials[1]).rows.back(), version);
}

TEST(FieldLogTests, FindAMaterialByWhatIsKnownOfIt) {
    const Explanation told =
        explainText(BEGIN ASKS(KEY("a")) FETCH(A, "x1") ALL("1", "0", "1") MOVE(A, "x1") ENDS("1"));
    ASSERT_EQ(told.runs.size(), 1U);
    for (const char* text : {"a", "/m/A", "x1", "aaaa", A}) {
        EXPECT_EQ(materialsLike(told.runs[0], text).size(), 1U) << text;
    }
    EXPECT_TRUE(materialsLike(told.runs[0], "b").empty());
}

// A log from disk may hold anything: cut lines, doubled lines, other bytes.
TEST(FieldLogTests, SurviveAnyBytes) {
    const std::string clean =
        "10:00:00.1 [2] [1] " BEGIN ASKS(KEY("a") "," KEY("b")) FETCHED_ALL ALL("4", "2", "1")
            MOVE(A, "a") NEWER_STANDS(B, "b") MOVE(C, "c") PADDING "c.dll \n" ENDS("1");
    std::uint32_t state = 7;
    const auto random = [&state] {
        state = state * 1664525U + 1013904223U; // the same bytes in every run of the test
        return state >> 8U;
    };
    for (int round = 0; round < 500; ++round) {
        std::string log;
        for (char c : clean) {
            const auto dice = random() % 400;
            log += dice == 0 ? static_cast<char>(random()) : c;
            log += dice == 1 ? "\n" : dice == 2 ? log.substr(log.size() / 2) : "";
        }
        for (const KelvarRun& run : explainText(log).runs) {
            EXPECT_FALSE(run.endWords.empty());
            EXPECT_EQ(run.order.size(), run.materials.size());
        }
    }
}

} // namespace
