#include <gtest/gtest.h>

#include "support/fakehost.h"
#include "updatekelvar/data/exec/execmgr.h"

namespace {

TEST(MaterialExec, ReadsItsText) {
    const std::pair<const char*, XExecMap> rows[] = {
        {"", {}},
        {R"((%process%="a.exe" %param%="--x"))", {{"a.exe", {"--x"}}}},
        {R"((%process%="a.exe" %param%="--x")&&(%process%="b.exe" %param%="--y"))",
         {{"a.exe", {"--x"}}, {"b.exe", {"--y"}}}},
        {R"((%process%="a" %param%="x")&&(%process%="a" %param%="x")&&(%process%="a" %param%="w"))",
         {{"a", {"x", "w"}}}},
        {R"((%process%="a.exe"))", {{"a.exe", {""}}}},
        {R"((%param%="x" %process%="a.exe"))", {{"a.exe", {""}}}}, // looked for from place 9 on
        {R"((        %param%="x"))", {{"", {"x"}}}},
        {R"((%process% is "a.exe", %param% is "x"))", {{"a.exe", {"x"}}}},
        {R"((%process%="a.exe))", {{"", {""}}}},
        {R"((%process%="a" %param%="x")&&()", {{"", {""}}, {"a", {"x"}}}},
        {"%process%", {{"", {""}}}},
    };
    for (const auto& [text, expected] : rows) {
        XMaterialExec exec;
        EXPECT_EQ(exec.parseExec(text), *text ? 0 : -1);
        XExecMap map;
        EXPECT_EQ(exec.getExecMap(map), 0);
        EXPECT_EQ(map, expected) << text;
    }
}

TEST(ExecMgr, StartsEachOnceAndTheProtectionProgramLast) {
    FakeHost host;
    XExecMgr manager;
    EXPECT_EQ(manager.addExec({}), -1);
    EXPECT_EQ(manager.addExec({{"ORVPROTECT.EXE", {"p"}}, {"Z.exe", {"1", "2"}}}), 0);
    EXPECT_EQ(manager.addExec({{"z.EXE", {"2", "3"}}, {"\xC3\xA4.exe", {"\xC3\xB6"}}}), 0);
    EXPECT_EQ(manager.addExec({{"\\\\srv\\any\\where.exe", {"/c"}}}), 0)
        << "the platform's word counts";
    EXPECT_EQ(manager.execAll(), 0);
    const std::vector<std::pair<std::wstring, std::wstring>> expected = {
        {L"\\\\srv\\any\\where.exe", L"/c"},
        {L"z.exe", L"1"},
        {L"z.exe", L"2"},
        {L"z.exe", L"3"},
        {L"\u00e4.exe", L"\u00f6"},
        {L"orvprotect.exe", L"p"},
    };
    EXPECT_EQ(host.startedPrograms, expected);
    EXPECT_EQ(host.lineWith("exec: z").text, "update plugin, kelvar, exec: z.exe , params: 1 ");
}

} // namespace
