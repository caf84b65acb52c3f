#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "sandbox/platform/childprocess.h"
#include "tests/support/clientbuild.h"

// Whole runs of the sandbox, and what their scenario's author wrote down beforehand.

namespace wholerun {

namespace fs = std::filesystem;
using Json = nlohmann::json;

/// A folder with a finished run of five-channels.json.
inline const char* const demoRun = std::getenv("REPORT_DEMO");

inline Json readJson(const fs::path& file) {
    std::ifstream stream(file);
    return Json::parse(stream);
}

/// xsandbox with a folder of the test's own.
class ReportTest : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "xreport-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
        run = folder / "run";
    }
    void TearDown() override {
        if (!HasFailure()) {
            fs::remove_all(folder);
        }
    }

    int xsandbox(const std::vector<std::string>& arguments) {
        const fs::path output = folder / "output.txt";
        auto child = sandbox::ChildProcess::start(XSANDBOX, arguments, folder, output);
        const int exit = child ? child->wait() : -1;
        std::ostringstream text;
        text << std::ifstream(output).rdbuf();
        said = text.str();
        return exit;
    }

    /// Plays a scenario in the test's folder; `worst` is the exit status that it may have.
    void play(const Json& scenario, int worst = 0) {
        std::ofstream(folder / "scenario.json") << scenario.dump(2);
        const std::vector<std::string> call = clientbuild::with(
            {"run", (folder / "scenario.json").string(), "--folder", run.string()});
        ASSERT_LE(xsandbox(call), worst) << said;
    }

    Json explained() {
        EXPECT_EQ(xsandbox({"explain", "--folder", run.string(), "--all", "--json"}), 0) << said;
        return Json::parse(said, nullptr, false);
    }

    fs::path folder;
    fs::path run;
    std::string said;
};

/// "placed" or "refused: already up to date", of one material.
inline std::string wordsOf(const std::string& decision, const Json& reason) {
    return decision + (reason.is_string() ? ": " + reason.get<std::string>() : "");
}

/// What the scenario expects of each material of a step.
inline std::map<std::string, std::string> expectedOf(const Json& scenario, const Json& phase) {
    std::map<std::string, std::string> expected;
    const Json materials = phase.at("expect").value("materials", Json::object());
    const auto take = [&](const std::string& name, const Json& goal) {
        expected[name] = wordsOf(goal.at(0), goal.size() > 2 ? goal[2] : Json());
    };
    for (const Json& material : scenario.at("platform").value("materials", Json::array())) {
        const std::string name = material.at("name");
        if (materials.contains(name) || materials.contains("*")) {
            take(name, materials.contains(name) ? materials[name] : materials["*"]);
        }
    }
    return expected;
}

inline void expectAsWritten(const Json& scenario, const Json& told) {
    std::size_t next = 0;
    for (const Json& phase : scenario.at("phases")) {
        if (phase.at("do") != "run") {
            continue;
        }
        ASSERT_LT(next, told.at("runs").size());
        std::map<std::string, std::string> found;
        for (const Json& row : told["runs"][next].at("materials")) {
            found[row.at("name")] = wordsOf(row.at("decision"), row.at("reason"));
        }
        for (const auto& [name, words] : expectedOf(scenario, phase)) {
            const auto row = found.find(name);
            EXPECT_EQ(row == found.end() ? "left" : row->second, words)
                << name << " in run " << next + 1;
        }
        ++next;
    }
    EXPECT_EQ(next, told["runs"].size());
}

} // namespace wholerun
