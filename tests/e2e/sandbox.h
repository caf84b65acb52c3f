#pragma once

#include <algorithm>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>

#include "e2e/scenariorun.h"

/// xsandbox as its users call it, with a folder of each test's own.
namespace e2e {

namespace fs = std::filesystem;
using Json = nlohmann::json;

inline constexpr int asExpected = 0;
inline constexpr int different = 1;
inline constexpr int sandboxFailed = 2;

struct Case {
    const char* name;
    const char* scenario;
    const char* patch;
    int exit = asExpected;
    const char* says = "everything is as the scenario expects";
};

inline void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.name;
}

/// xsandbox with a folder of the test's own.
class Sandbox : public testing::Test {
protected:
    void SetUp() override {
        std::string pattern = (fs::temp_directory_path() / "xsandbox-XXXXXX").string();
        ASSERT_NE(mkdtemp(pattern.data()), nullptr);
        folder = pattern;
    }

    void TearDown() override {
        if (!HasFailure()) {
            fs::remove_all(folder);
        }
    }

    auto start(std::vector<std::string> arguments, const fs::path& output) const {
        if (arguments[0] == "run" || arguments[0] == "host") {
            arguments = clientbuild::with(std::move(arguments));
        }
        arguments.insert(arguments.end(), {"--folder", (folder / "run").string()});
        return sandbox::ChildProcess::start(XSANDBOX, arguments, folder, output);
    }

    /// Its exit status; what it says is in `said`.
    int xsandbox(const std::vector<std::string>& arguments) {
        const fs::path output = folder / "output.txt";
        auto child = start(arguments, output);
        const int exit = child ? child->wait() : -1;
        said = textOf(output);
        return exit;
    }

    /// Whether each step shows its sections once, in the order of the work.
    bool tellsInOrder() const {
        const std::vector<std::string> sections{"  Conversation", "  Not for this client",
                                                "  Downloads",    "  Files",
                                                "  Notification", "  Programs",
                                                "  Result"};
        auto next = sections.begin();
        std::istringstream lines(said);
        for (std::string line; std::getline(lines, line);) {
            const auto section = std::find(sections.begin(), sections.end(), line);
            if (section == sections.end()) {
                next = line.rfind("Step ", 0) == 0 ? sections.begin() : next;
            } else if (section < next) {
                return false;
            } else {
                next = section + 1;
            }
        }
        return true;
    }

    /// A scenario with a patch, in the test's own folder.
    std::string patched(const std::string& scenario, const std::string& patch) const {
        std::ifstream stream(fs::path(SCENARIOS) / scenario);
        const fs::path file = folder / "scenario.json";
        std::ofstream(file) << Json::parse(stream).patch(Json::parse(patch)).dump(2);
        return file.string();
    }

    /// A setup leaves its trace when the client is at its version.
    void awaitTrace() const {
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(60);
        while (fs::is_empty(folder / "run" / "sandbox" / "started")) {
            ASSERT_LT(std::chrono::steady_clock::now(), end);
            std::this_thread::sleep_for(std::chrono::milliseconds(20));
        }
    }

    bool says(const std::string& text) const { return said.find(text) != std::string::npos; }

    fs::path folder;
    std::string said;
};

class Scenario : public Sandbox, public testing::WithParamInterface<Case> {};

inline std::string nameOf(const testing::TestParamInfo<Case>& tested) {
    return tested.param.name;
}

} // namespace e2e
