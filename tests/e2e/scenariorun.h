#pragma once

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <vector>

#include "sandbox/platform/childprocess.h"
#include "support/clientbuild.h"

/// Whole runs of scenarios that tests make up.
namespace e2e {

inline std::string textOf(const std::filesystem::path& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

inline nlohmann::json smallScenario() {
    return nlohmann::json::parse(textOf(std::filesystem::path(SCENARIOS) / "small.json"));
}

/// xsandbox's exit status; what it says comes to `output` of `folder`.
inline int callXsandbox(const std::vector<std::string>& arguments,
                        const std::filesystem::path& folder, const char* output) {
    auto child = sandbox::ChildProcess::start(XSANDBOX, arguments, folder, folder / output);
    return child ? child->wait() : -1;
}

/// xsandbox's exit status for the scenario; its run lies in "run" of `folder`, and what it says
/// in "output".
inline int runScenario(const nlohmann::json& scenario, const std::filesystem::path& folder) {
    const std::filesystem::path file = folder / "scenario.json";
    std::ofstream(file) << scenario.dump(2);
    const std::vector<std::string> call =
        clientbuild::with({"run", file.string(), "--folder", (folder / "run").string()});
    return callXsandbox(call, folder, "output");
}

/// The lines of the run's faults.jsonl.
inline std::vector<nlohmann::json> faultsOf(const std::filesystem::path& folder) {
    std::vector<nlohmann::json> faults;
    std::istringstream lines(textOf(folder / "run" / "sandbox" / "faults.jsonl"));
    for (std::string line; std::getline(lines, line);) {
        faults.push_back(nlohmann::json::parse(line));
    }
    return faults;
}

/// A folder of the test's own below the system's one for such.
inline std::filesystem::path newFolder() {
    std::string pattern = (std::filesystem::temp_directory_path() / "xfaults-XXXXXX").string();
    return mkdtemp(pattern.data()) == nullptr ? "" : pattern;
}

} // namespace e2e
