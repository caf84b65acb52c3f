#include <fstream>
#include <gtest/gtest.h>
#include <thread>

#include "host/xnbase.h"
#include "moduleslab.h"
#include "platform/text.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/hostprocess.h"
#include "sandbox/platform/otherprocess.h"
#include "sandbox/platform/parameters.h"

namespace fs = std::filesystem;

namespace {

TEST(Parameters, SplitAsTheClientsSystemDoes) {
    struct Row {
        const char* text;
        std::vector<std::string> pieces;
    };
    const Row rows[] = {{"", {}},
                        {" \t ", {}},
                        {"/s  /nosafe", {"/s", "/nosafe"}},
                        {R"(a "b c" d"e f"g)", {"a", "b c", "de fg"}},
                        {R"("" x)", {"", "x"}},
                        {R"(c:\dir\ a\\b)", {R"(c:\dir\)", R"(a\\b)"}},
                        {R"("c:\dir\\" y)", {R"(c:\dir\)", "y"}},
                        {R"(a\"b \\\"c)", {"a\"b", R"(\"c)"}},
                        {R"("a""b" c)", {"a\"b", "c"}},
                        {R"("open end)", {"open end"}}};
    for (const Row& row : rows) {
        EXPECT_EQ(sandbox::splitParameters(row.text), row.pieces) << row.text;
    }
}

/// Looks until it holds; nothing tells when it does. Whether that came in time.
template <class Condition>
bool comes(const Condition& condition) {
    bool holds = condition();
    for (int looks = 0; looks < 6000 && !holds; ++looks) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        holds = condition();
    }
    return holds;
}

class ModulePrograms : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(client / "Bin" / "deep");
        fs::create_directories(client / "update");
        for (const char* name :
             {"Bin/tool.exe", "Bin/deep/nested.exe", "update/waiting.exe", "../outside.exe"}) {
            fs::create_hard_link(sandbox::executableFile(), client / name);
        }
        std::ofstream(client / "Bin" / "data.exe") << "no program";
        std::error_code notOnWindows;
        fs::create_symlink("../../outside.exe", client / "Bin" / "link.exe", notOnWindows);
    }

    /// Starts it and tells the event.
    nlohmann::json start(const std::string& file) {
        const lab::Events events;
        const std::wstring parameters =
            L"--leave-trace \"" + trace.wstring() + L"\" \"two words\" \u00e4\u0416";
        lab::bind<xnbase::runProcess>(L"xnbase.dll", "runProcess")(platform::toWide(file).c_str(),
                                                                   parameters.c_str());
        return events.of("process").at(0);
    }

    const fs::path client = sandbox::processFolders().client();
    const fs::path trace = sandbox::processFolders().state() / "trace.json";
};

TEST_F(ModulePrograms, StartBelowTheClientFolderOnly) {
    const std::string full = sandbox::toClientPath(client);
    const std::pair<std::string, const char*> inside[] = {
        {"bin\\TOOL.exe", "Bin/tool.exe"},
        {full + "\\Bin\\tool.exe", "Bin/tool.exe"},
        {"nested.exe", "Bin/deep/nested.exe"},
        {"update\\waiting.exe", "update/waiting.exe"}};
    for (const auto& [file, started] : inside) {
        SCOPED_TRACE(file);
        const nlohmann::json event = start(file);
        ASSERT_EQ(event["started"], true);
        EXPECT_EQ(event["file"], file);
        EXPECT_TRUE(sandbox::sameName(event["path"], sandbox::pathText(client / started)));
        ASSERT_TRUE(comes([&] { return fs::exists(trace); }));
        const auto left = sandbox::readJson(trace);
        EXPECT_EQ(left->at("arguments"), nlohmann::json({"two words", "\u00e4\u0416"}));
        EXPECT_TRUE(comes([&] { return sandbox::isForgotten(left->at("process")); }));
        fs::remove(trace);
    }
    const std::string outside[] = {"waiting.exe",     "deep\\nested.exe",
                                   "..\\outside.exe", full + "\\..\\outside.exe",
                                   "Bin\\link.exe",   "\\bin\\sh",
                                   "Bin\\data.exe",   "Bin",
                                   "absent.exe",      ""};
    for (const std::string& file : outside) {
        const nlohmann::json event = start(file);
        EXPECT_EQ(event["started"], false) << file;
        EXPECT_EQ(event["path"], "") << file;
    }
}

} // namespace
