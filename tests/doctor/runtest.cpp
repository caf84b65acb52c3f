#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>

#include "sandbox/platform/childprocess.h"
#include "tests/support/clientbuild.h"

// xsandbox on a real run, of a scenario that it has written itself.

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

class DoctorOnRun : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "xsandbox-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
    }
    void TearDown() override { fs::remove_all(folder); }

    /// What it tells as JSON; an empty object when it tells none.
    Json xsandbox(std::vector<std::string> arguments) const {
        const fs::path output = folder / "output.txt";
        arguments.emplace_back("--json");
        auto child = sandbox::ChildProcess::start(XSANDBOX, arguments, folder, output);
        const int exit = child ? child->wait() : -1;
        std::ifstream stream(output);
        std::string last; // ahead of it an error is told to people
        for (std::string line; std::getline(stream, line);) {
            last = line;
        }
        Json told = Json::parse(last, nullptr, false);
        EXPECT_TRUE(told.is_object()) << last;
        EXPECT_EQ(told.is_object() ? told.value("status", -1) : -1, exit);
        return told.is_object() ? told : Json::object();
    }

    int run(const std::string& scenario) const {
        return xsandbox(clientbuild::with({"run", (folder / scenario).string(), "--folder",
                                           (folder / "run").string(), "--steps", "1"}))
            .value("status", -1);
    }

    std::vector<std::string> findings() const {
        std::vector<std::string> codes;
        const Json told = xsandbox({"doctor", (folder / "run").string()});
        for (const Json& finding : told.at("findings")) {
            codes.push_back(finding.at("code").get<std::string>());
        }
        return codes;
    }

    /// Times and sizes of all that the run consists of.
    std::map<std::string, std::string> everything() const {
        std::map<std::string, std::string> all;
        for (const auto& entry : fs::recursive_directory_iterator(folder / "run")) {
            if (!entry.is_symlink()) {
                all[entry.path().string()] =
                    std::to_string(entry.last_write_time().time_since_epoch().count()) + " " +
                    (entry.is_regular_file() ? std::to_string(entry.file_size()) : "");
            }
        }
        return all;
    }

    fs::path folder;
};

} // namespace

TEST_F(DoctorOnRun, FindsNothingBeforeAndAfterTheRestartAndThenWhatIsPlanted) {
    const std::string scenario = (folder / "all.json").string();
    xsandbox({"new", scenario, "--with", "cabinet,condition,program,waiting,group"});
    ASSERT_EQ(run("all.json"), 0);
    const auto before = everything();
    EXPECT_EQ(findings(), std::vector<std::string>());
    EXPECT_EQ(everything(), before);

    EXPECT_EQ(xsandbox({"restart", "--folder", (folder / "run").string()}).value("status", -1), 0);
    EXPECT_EQ(findings(), std::vector<std::string>());

    std::ofstream(folder / "run/client/bin/app.dll", std::ios::app) << "changed";
    std::ofstream(folder / "run/client/update/_1000") << "half";
    EXPECT_EQ(findings(), (std::vector<std::string>{"list-md5", "transfer-leftover"}));
}

TEST_F(DoctorOnRun, FindsAWaitingFileThatWasDeletedBeforeTheRestart) {
    xsandbox({"new", (folder / "waiting.json").string(), "--with", "waiting"});
    ASSERT_EQ(run("waiting.json"), 0);
    for (const auto& entry : fs::directory_iterator(folder / "run/client/update")) {
        if (entry.is_regular_file()) {
            fs::remove(entry.path());
        }
    }
    EXPECT_EQ(findings(), std::vector<std::string>{"waiting-file-gone"});
}

TEST_F(DoctorOnRun, ChecksWhatItOffers) {
    const std::string scenario = (folder / "all.json").string();
    const std::string offer = (folder / "offer").string();
    xsandbox({"new", scenario, "--with", "cabinet,group"});
    EXPECT_EQ(xsandbox({"check", scenario, "--offer", offer}).value("status", -1), 0);
    EXPECT_EQ(xsandbox({"check", offer}).at("mistakes"), Json::array());
    EXPECT_EQ(xsandbox({"check", (folder / "nothing").string()}).value("status", -1), 2);
    EXPECT_EQ(xsandbox({"doctor", (folder / "nothing").string()}).value("status", -1), 2);
}

TEST_F(DoctorOnRun, TellsWhatIsWrongWithACall) {
    const std::string deep = (folder / "deep.json").string();
    const std::size_t levels = 80000;
    std::ofstream(deep) << "{\n\"client\": " << std::string(levels, '[') << std::string(levels, ']')
                        << "}";
    const std::string mine = (folder / "mine.json").string();
    const std::string nowhere = (folder / "nowhere").string();
    const struct {
        std::vector<std::string> call;
        const char* error; ///< part of it
    } cases[] = {
        {{"run", deep, "--folder", (folder / "run").string()}, "line 2: objects and arrays"},
        {{"new", mine, "--with", "nonsense"}, "there are cabinet, condition"},
        {{"new", (folder / "no" / "mine.json").string()}, "No such file or directory"},
        {{"new", deep}, "is there already"},
        {{"check", nowhere}, "no such scenario"},
        {{"check", folder.string()}, "holds no materials.json"},
        {{"check", folder.string(), "--offer", nowhere}, "--offer is for a scenario"},
        {{"doctor", nowhere}, "is no folder"},
        {{"doctor", ""}, "is no folder"},
        {{"doctor", folder.string(), "--settings", nowhere}, "--settings: there is no file"},
        {{"doctor", folder.string(), "--versions", folder.string()}, "--versions: there is no"},
        {{"doctor", folder.string(), "--file-list", nowhere}, "--file-list: there is no file"},
    };
    for (const auto& [call, error] : cases) {
        const Json told = xsandbox(call);
        EXPECT_EQ(told.value("status", -1), 2) << call[0];
        EXPECT_NE(told.value("error", "").find(error), std::string::npos) << told;
    }
    EXPECT_EQ(xsandbox({"check", deep}).at("mistakes").at(0).at("code"), "syntax");
}
