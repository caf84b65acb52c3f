#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/cli/built.h"
#include "sandbox/cli/builtupgrade.h"
#include "sandbox/cli/clientstate.h"
#include "sandbox/cli/rowtracker.h"
#include "sandbox/server/updateplatform.h"

/// The comparisons of what stands with what is expected, one subject each.
namespace sandbox {

/// What was observed of one phase; a restart has nothing but its state.
struct PhaseFacts {
    bool isRestart = false;
    int hostExit = 0;
    std::vector<nlohmann::json> events;
    std::vector<Row> rows;
    RunReport report;
    std::size_t traces = 0; ///< left behind by started programs
    std::string missed;     ///< the step of the script that did not come; empty for none
};

/// What is expected of one material.
struct RowGoal {
    std::string state = "left";
    std::string version; ///< that the target has
    bool absent = false; ///< nothing stands at the target
    std::string reason;  ///< of a refusal in this phase
};

/// Whether a setting is a time that every check writes, and that no scenario can tell.
bool isCheckTime(const std::string& key);

/// What is expected to stand after a phase.
struct Goals {
    std::map<std::string, RowGoal> rows; ///< by material name
    std::map<std::string, std::string> versions;
    nlohmann::json settings = nlohmann::json::object();
    std::vector<std::string> update; ///< names below "update", sorted
    std::size_t replaces = 0;        ///< delayed moves
    std::size_t deletes = 0;
};

/// One phase in view of all comparisons.
struct Comparison {
    const std::vector<BuiltMaterial>& materials;
    const BuiltUpgrade& upgrade;
    const Goals& goals;
    const ClientState& before;
    const ClientState& now;
    const PhaseFacts& facts;
    const nlohmann::json& expect;
    std::vector<std::string> differences = {};

    void differ(const std::string& what, const std::string& expected, const std::string& got);
    const RowGoal& goalOf(const BuiltMaterial& material) const;
};

/// Each material's target, and the files that wait for it.
void compareRows(Comparison& comparison);
/// Every other file of the client, and the folder "update".
void compareFiles(Comparison& comparison);
/// Version store, settings, delayed moves.
void compareStores(Comparison& comparison);
/// filelist.xml.
void compareFileList(Comparison& comparison);
/// In place of all of these: each file of the client is the one that it was or the one on
/// offer, whole, and no version is told of a file that is not in place. With `mustBeComplete`,
/// all that is on offer is in place, and nothing waits.
void compareWhole(Comparison& comparison, bool mustBeComplete);
/// The host's end, failures, complaints, log lines.
void compareEnd(Comparison& comparison);
/// These, and downloads, notifications, the other channels.
void compareRun(Comparison& comparison);
/// The package and file channels, and the programs in the background.
void compareUpgrade(Comparison& comparison);
/// What the client tells of itself, and how often.
void compareReports(Comparison& comparison);
/// Files whose content or version the scenario tells by itself.
void compareContents(Comparison& comparison);
/// Programs in the order of their starts; `background` may come at any moment.
void comparePrograms(Comparison& comparison, const std::vector<std::string>& background);

/// The first place where two lists differ, when they do.
void compareLists(Comparison& comparison, const std::string& what,
                  const std::vector<std::string>& expected, const std::vector<std::string>& got);

/// The texts of an array; none when it is not there.
std::vector<std::string> textsOf(const nlohmann::json& expect, const char* member);

/// Elements of one line, for the text of a difference.
std::string joined(const std::vector<std::string>& texts);

} // namespace sandbox
