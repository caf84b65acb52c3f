#include <fstream>
#include <gtest/gtest.h>

#include "host/xnbase.h"
#include "moduleslab.h"
#include "platform/text.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/platform/hostprocess.h"
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

class ModulePrograms : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(client / "Bin" / "deep");
        fs::create_directories(client / "update");
        addProgram("Bin/tool.exe");
        addProgram("Bin/deep/nested.exe");
        addProgram("update/waiting.exe");
        std::ofstream(client / "Bin" / "data.exe") << "no program";
        std::error_code there;
        fs::create_hard_link(sandbox::executableFile(), client / ".." / "outside.exe", there);
        fs::create_symlink("../../outside.exe", client / "Bin" / "link.exe", there);
    }

    void addProgram(const char* name) {
        std::error_code there;
        fs::create_hard_link(sandbox::executableFile(), client / name, there);
    }

    /// Starts it and tells the event.
    nlohmann::json start(const std::string& file) {
        const lab::Events events;
        const std::wstring parameters =
            L"--leave-trace \"" + platform::toWide(trace.string()) + L"\" \"two words\" \u00e4";
        lab::bind<xnbase::runProcess>(L"xnbase.dll", "runProcess")(platform::toWide(file).c_str(),
                                                                   parameters.c_str());
        return events.of("process").at(0);
    }

    const fs::path client = sandbox::processFolders().client();
    const fs::path trace = sandbox::processFolders().state() / "trace";
};

TEST_F(ModulePrograms, StartBelowTheClientFolderOnly) {
    struct Row {
        std::string file;
        std::string started; ///< relative to the client folder
    };
    const std::string full = sandbox::toClientPath(client);
    const Row rows[] = {{"bin\\TOOL.exe", "Bin/tool.exe"},
                        {full + "\\Bin\\tool.exe", "Bin/tool.exe"},
                        {"nested.exe", "Bin/deep/nested.exe"},
                        {"update\\waiting.exe", "update/waiting.exe"},
                        {"waiting.exe", ""},
                        {"deep\\nested.exe", ""},
                        {"..\\outside.exe", ""},
                        {"Bin\\link.exe", ""},
                        {full + "\\..\\outside.exe", ""},
                        {"\\bin\\sh", ""},
                        {"Bin\\data.exe", ""},
                        {"Bin", ""},
                        {"absent.exe", ""},
                        {"", ""}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.file);
        const nlohmann::json event = start(row.file);
        EXPECT_EQ(event["file"], row.file);
        EXPECT_EQ(event["started"], !row.started.empty());
        EXPECT_EQ(event["path"], row.started.empty() ? "" : (client / row.started).string());
        if (!row.started.empty()) {
            ASSERT_TRUE(lab::eventually([&] { return fs::exists(trace); }));
            const auto left = sandbox::readJson(trace);
            EXPECT_EQ(left->at("arguments"), nlohmann::json({"two words", "\u00e4"}));
            const fs::path process = "/proc/" + left->at("process").dump();
            EXPECT_TRUE(lab::eventually([&] { return !fs::exists(process); })); // is reaped
            fs::remove(trace);
        }
    }
}

} // namespace
