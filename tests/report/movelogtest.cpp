#include "tests/report/fieldlines.h"

// Moves, one by one and in groups, that go well, fail, wait, or whose end the log does not have.

namespace {

using namespace sandbox::report;

class MoveLogTest : public testing::TestWithParam<FieldLog> {};

TEST_P(MoveLogTest, IsTold) {
    EXPECT_EQ(summaryOf(explainText(GetParam().log)), GetParam().summary);
}

INSTANTIATE_TEST_SUITE_P(
    Groups, MoveLogTest,
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
        FieldLog{"OneWaits",
                 BEGIN FETCHED_ALL ALL("4", "1", "1") MOVE(A, "a") MOVE(B, "b") MOVE(C, "c")
                     WAITS("c.dll") MOVE(D, "d") PADDING("b.dll") PADDING("d.dll") ENDS("1"),
                 "1: aaaa placed; bbbb waiting; cccc waiting; dddd waiting; | files were placed or "
                 "left to the restart"},
        FieldLog{"OneStaysThatCannotBeTakenBack",
                 BEGIN FETCHED_ALL ALL("4", "1", "1") MOVE(A, "a") MOVE(B, "b") NEWER_STANDS(
                     C, "c") "update plugin, move task, rollback 1 error, code: 5 \n" ENDS("1"),
                 "1: aaaa placed; bbbb placed; cccc refused (not newer than what stands); dddd "
                 "refused (not tried, its group had failed); | files were placed"},
        FieldLog{"OneStaysThatCannotBeMadeToWait",
                 BEGIN FETCHED_ALL ALL("4", "1", "0") MOVE(A, "a") MOVE(B, "b") MOVE(C, "c")
                     WAITS("c.dll") MOVE(D, "d") MOVE_ERROR("rollback 1", "5") PADDING("a.dll")
                         PADDING("b.dll") PADDING("d.dll") MOVE_ERROR("peeding src to dst", "112")
                             ENDS("1"),
                 "1: aaaa placed; bbbb waiting; cccc waiting; dddd refused (cannot be left to the "
                 "restart); | files were placed or left to the restart"},
        FieldLog{"OneWaitsOfAFailedGroup",
                 BEGIN FETCH(A, "a") FETCH(B, "b") ALL("2", "1", "0") MOVE(A, "a") WAITS("a.dll")
                     NEWER_STANDS(B, "b") MOVE_ERROR("rollback 1", "32") ENDS("0"),
                 "1: aaaa waiting; bbbb refused (not newer than what stands); | nothing was placed "
                 "as it should be: every group failed; what was left to the restart before still "
                 "is"},
        FieldLog{"AllWait",
                 BEGIN FETCH(A, "a") ALL("1", "0", "1") MOVE(A, "a") WAITS("a.dll") ENDS("1"),
                 "1: aaaa waiting; | files were left to the restart"}),
    nameOf);

#define UNENDED "the log does not tell how it ended"

// The line that would have told of a failure may be the next one.
INSTANTIATE_TEST_SUITE_P(
    Cut, MoveLogTest,
    testing::Values(FieldLog{"BehindASchedule",
                             BEGIN FETCH(A, "a") ALL("1", "0", "1") MOVE(A, "a") WAITS("a.dll"),
                             "1: aaaa untold; | " UNENDED},
                    FieldLog{"BehindTheScheduleOfAGroup",
                             BEGIN FETCH(A, "a") FETCH(B, "b") ALL("2", "1", "0") MOVE(A, "a")
                                 MOVE(B, "b") WAITS("b.dll") PADDING("a.dll"),
                             "1: aaaa untold; bbbb waiting; | " UNENDED},
                    FieldLog{"BehindALock",
                             BEGIN FETCH(A, "a") FETCH(B, "b") ALL("2", "1", "0") MOVE(A, "a")
                                 MOVE(B, "b") MOVE_ERROR("move dst to temp", "32"),
                             "1: aaaa untold; bbbb untold; | " UNENDED},
                    FieldLog{"BehindAnOldFileThatStays",
                             BEGIN FETCH(A, "a") ALL("1", "0", "1") MOVE(A, "a")
                                 MOVE_ERROR("move temp reboot", "5"),
                             "1: aaaa untold; | " UNENDED},
                    FieldLog{
                        "InATakeBack",
                        BEGIN FETCH(A, "a") FETCH(B, "b") ALL("2", "1", "0") MOVE(A, "a")
                            NEWER_STANDS(B, "b"),
                        "1: aaaa untold; bbbb refused (not newer than what stands); | " UNENDED}),
    nameOf);

struct Written {
    std::string log;
    const char* words;
};

// The log has no line of it: it follows, or is not told.
TEST(StoreTest, TellsWhatFollowsForTheClientsVersion) {
    const Written rows[] = {
        {BEGIN FETCH(A, "a") ALL("1", "0", "1") MOVE(A, "a") ENDS("1"),
         "update\\version.dat is to become the packet's version: it follows, as every file was "
         "placed or left to the restart; no line tells whether the store took it"},
        {BEGIN FETCH(A, "a") FETCH(B, "b") ALL("2", "0", "2") MOVE(A, "a") NEWER_STANDS(B, "b")
             ENDS("1"),
         "update\\version.dat stays: it follows, as not every file was placed or left to the "
         "restart"},
        {MOVE(A, "a") ENDS("1"), "whether update\\version.dat was written, the log does not tell"},
    };
    for (const Written& row : rows) {
        const Explanation told = explainText(row.log);
        ASSERT_EQ(told.runs.size(), 1U) << row.log;
        EXPECT_EQ(told.runs[0].versions, std::vector<std::string>{row.words}) << row.log;
    }
    EXPECT_TRUE(explainText(BEGIN FETCH(A, "a") ALL("1", "0", "1") NEWER_STANDS(A, "a") ENDS("0"))
                    .runs.at(0)
                    .versions.empty());
}

// A file that is scheduled again in a later run is deleted with its older schedule.
TEST(WaitingTest, IsLostWithAnOlderScheduleOfTheSameFile) {
    const Explanation told = explainText(BEGIN FETCH(A, "a") ALL("1", "0", "1") MOVE(A, "a") WAITS(
        "a.dll") "update plugin, update padding, padding count: 1 , succ count: 1 \n"
                 "update plugin, update padding, dupl padding, delete: C:\\x\\update\\" A
                 " , lasterror: 0 \n" QUEUE_ENDS("1"));
    const Material& row = told.runs.at(0).materials.at(0);
    EXPECT_EQ(row.decision, "waiting");
    ASSERT_EQ(row.notes.size(), 1U);
    EXPECT_NE(row.notes[0].find("deletes the file that waits"), std::string::npos);
}

} // namespace
