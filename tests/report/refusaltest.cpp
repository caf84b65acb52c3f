#include <cstdint>

#include "sandbox/report/section.h"
#include "tests/report/fieldlines.h"

// What a report says of single materials of a log, and that no log does it harm.

namespace {

using namespace sandbox::report;

struct Refusal {
    const char* lines;
    const char* reason;
    const char* left = nullptr; ///< what the failed test has there, where it matters
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
        {FETCH(A, "a") KELVAR "task move, bad name, md5: " A " , file md5: ..\\x \n",
         "hash is no plain name", A " / ..\\x"},
        {FETCH(A, "a") KELVAR "task move, bad path: C:\\a , md5: b , md5: " A " \n",
         "target outside the client"},
        {FETCH(A, "a") KELVAR "task move, target is a folder: bin , md5: " A " \n",
         "target is a folder"},
        {FETCH(A, "a") KELVAR "task premove, bad member: ..\\x , cabinet: " A " \n" KELVAR
                              "task premove, error: " A "  to  a \n",
         "cabinet does not expand", "its member ..\\x"},
        {FETCH(A, "a") KELVAR
         "task premove, cabinet asks for too much, members: 2 , unpacked bytes: 3000000000 , "
         "cabinet: " A " \n" KELVAR "task premove, error: " A "  to  a \n",
         "cabinet does not expand", "all it asks for, 2 members, 3000000000 bytes"},
        {FETCH(A, "a") KELVAR "needMove, src not exist: C:\\u\\x \n" KELVAR
                              "task move, not need move: " A "  to  a \n",
         "file is missing in its cabinet"},
        {FETCH(A, "a") KELVAR "needMove, src not exist: C:\\update\\" A " \n" KELVAR
                              "task move, not need move: " A "  to  a \n",
         "file is missing in the update folder"},
        {FETCH(A, "a") KELVAR "needMove, md5 diff, meta.fileMd5: C:\\u\\x , file md5: " B
                              " \n" KELVAR "task move, not need move: " A "  to  a \n",
         "content is not the announced one"},
        {FETCH(A, "a") NEWER_STANDS(A, "a"), "not newer than what stands"},
        {FETCH(A, "a") KELVAR "task move, not need move: " A "  to  a \n",
         "the log does not tell why"},
        {FETCH(A, "a") MOVE(A, "a") "update plugin, move task, move src to dst error, code: 5 \n",
         "cannot be put in place"},
        {FETCH(A, "a") MOVE(A, "a") WAITS("a") MOVE_ERROR("peeding src to dst", "112"),
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
            const bool isChecked = test.verdict == "failed" && row.left != nullptr;
            EXPECT_TRUE(!isChecked || test.left == row.left) << row.lines << test.left;
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
    const Explanation told = explainText(BEGIN ASKS(KEY("a")) FETCH(A, "x1") ALL("1", "0", "1")
                                             MOVE(A, "x1") WAITS("bin\\a.dll") ENDS("1"));
    ASSERT_EQ(told.runs.size(), 1U);
    for (const char* text : {"a", "/m/A", "x1", "aaaa", A, "bin/A.DLL", "C:\\x\\bin\\a.dll"}) {
        EXPECT_EQ(materialsLike(told.runs[0], text).size(), 1U) << text;
    }
    EXPECT_TRUE(materialsLike(told.runs[0], "b").empty());
    EXPECT_TRUE(materialsLike(told.runs[0], "n\\a.dll").empty());
}

// A log from disk may hold anything: cut lines, doubled lines, other bytes.
TEST(FieldLogTests, SurviveAnyBytes) {
    const std::string clean =
        "10:00:00.1 [2] [1] " BEGIN ASKS(KEY("a") "," KEY("b")) FETCHED_ALL ALL("4", "2", "1")
            MOVE(A, "a") NEWER_STANDS(B, "b") MOVE(C, "c") PADDING("c.dll") ENDS("1");
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
