#include <gtest/gtest.h>

#include "support/fakehost.h"
#include "updatekelvar/data/exec/execmgr.h"

namespace {

XExecMap parsed(const std::string& text) {
    XMaterialExec exec;
    EXPECT_EQ(exec.parseExec(text), text.empty() ? -1 : 0);
    XExecMap map;
    EXPECT_EQ(exec.getExecMap(map), 0);
    return map;
}

TEST(MaterialExec, ReadsItsText) {
    const struct {
        const char* text;
        XExecMap map;
    } rows[] = {
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
    for (const auto& row : rows) {
        EXPECT_EQ(parsed(row.text), row.map) << row.text;
    }
}

TEST(ExecMgr, StartsEachOnceAndTheProtectionProgramLast) {
    FakeHost host;
    XExecMgr manager;
    EXPECT_EQ(manager.addExec({}), -1);
    EXPECT_EQ(manager.addExec({{"ORVPROTECT.EXE", {"p"}}, {"Z.exe", {"1", "2"}}}), 0);
    EXPECT_EQ(manager.addExec({{"z.EXE", {"2", "3"}}, {"\xC3\xA4.exe", {"\xC3\xB6"}}}), 0);
    EXPECT_EQ(manager.execAll(), 0);
    const std::vector<std::pair<std::wstring, std::wstring>> expected = {
        {L"z.exe", L"1"},           {L"z.exe", L"2"},          {L"z.exe", L"3"},
        {L"\u00e4.exe", L"\u00f6"}, {L"orvprotect.exe", L"p"},
    };
    EXPECT_EQ(host.startedPrograms, expected);
    EXPECT_EQ(host.lineWith("exec:").text, "update plugin, kelvar, exec: z.exe , params: 1 ");
}

TEST(ExecMgr, DoesNothingWithoutTheHost) {
    FakeHost host;
    host.without(L"xnbase.dll", "runProcess");
    XExecMgr manager;
    manager.addExec({{"a.exe", {""}}});
    EXPECT_EQ(manager.execAll(), 0);
    EXPECT_TRUE(host.startedPrograms.empty());
}

} // namespace
