#include <gtest/gtest.h>

#include "hostile/faultmatrix.h"
#include "hostile/surroundings.h"
#include "platform/temporaryfolder.h"

// What the hostile test looks at beside its own trials, with planted findings.

namespace {

using namespace hostile;
namespace fs = std::filesystem;

void write(const std::string& name, const std::string& text) {
    const fs::path file = fs::temp_directory_path() / name;
    fs::create_directories(file.parent_path());
    std::ofstream(file) << text;
}

TEST(WideWatch, TellsWhatIsDoneToAHostileName) {
    const struct {
        const char* what;
        void (*act)();
        const char* sign; ///< of the finding; none for an empty one
    } rows[] = {
        {"nothing", [] {}, ""},
        {"another name", [] { write("good.dll", "1"); }, ""},
        {"made", [] { write("evil.cab", "1"); }, "+"},
        {"made in a folder", [] { write("client/evil.cab", "1"); }, "+"},
        {"made in another test's", [] { write("xrefresher-test-1/evil.cab", "1"); }, ""},
        {"other content", [] { write("evil.dll", "2"); }, "!"},
        {"the same content once more", [] { write("evil.dll", "1"); }, "!"},
        {"gone", [] { fs::remove(fs::temp_directory_path() / "evil.dll"); }, "-"},
    };
    for (const auto& row : rows) {
        const Surroundings surroundings;
        write("evil.dll", "1"); // of an earlier run
        fs::last_write_time(fs::temp_directory_path() / "evil.dll", {});
        const WideWatch watch({"evil.dll", "evil.cab"});
        row.act();
        std::string signs;
        for (const std::string& finding : watch.findings()) {
            signs += finding[0];
        }
        EXPECT_EQ(signs, row.sign) << row.what;
    }
}

/// In the place of the tests: a program whose parts do as a line of the shell says.
fs::path testsThat(const TemporaryFolder& folder, const std::string& first,
                   const std::string& second) {
    folder.write(
        "tests",
        "#!/bin/sh\nreport=${2#--gtest_output=json:}\nended=" + folder.onDisk("ended").string() +
            "\ncase $GTEST_SHARD_INDEX in\n0) " + first + " ;;\n1) " + second + " ;;\nesac\n");
    fs::permissions(folder.onDisk("tests"), fs::perms::owner_all);
    return folder.onDisk("tests");
}

/// One cell, at one spot.
std::string reports(const std::string& spot) {
    return R"(echo '{"testsuites":[{"testsuite":[{"name":"Is/)" + spot +
           R"(","Silent":"held"}]}]}' >"$report")";
}

TEST(FaultMatrixRun, IsWholeWithEachCellAndEachPart) {
    const struct {
        const char* what;
        std::string second;
        bool isWhole;
    } rows[] = {{"as it must be", reports("B"), true},
                {"a spot that got lost", reports("A"), false},
                {"a spot too many", reports("C\",\"Cut\":\"held"), false},
                {"a part that fails", reports("B") + "; exit 1", false}};
    for (const auto& row : rows) {
        const TemporaryFolder folder;
        const FaultMatrix matrix = runFaultMatrix(testsThat(folder, reports("A"), row.second), 2);
        EXPECT_EQ(matrix.isWhole, row.isWhole) << row.what;
    }
}

TEST(FaultMatrixRun, OutlivesItsPartsWhereOneEndsWithoutAReport) {
    const TemporaryFolder folder;
    const fs::path tests = testsThat(folder, "exit 1", "sleep 0.2; echo >$ended");
    EXPECT_THROW(runFaultMatrix(tests, 2), std::runtime_error);
    EXPECT_TRUE(fs::exists(folder.onDisk("ended")));
}

} // namespace
