#include "sandbox/cli/expectation.h"

#include <algorithm>
#include <stdexcept>

#include "sandbox/common/clientpath.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

constexpr const char* everyRow = "*";
constexpr const char* looseMember = "client";
constexpr const char* recordKey = "KEY_UPDATE_UPGRADE";

RowGoal readGoal(const Json& goal) {
    RowGoal read;
    read.state = goal.at(0).get<std::string>();
    read.absent = goal.size() > 1 && goal.at(1).is_null();
    read.version = goal.size() > 1 && goal.at(1).is_string() ? goal.at(1).get<std::string>() : "";
    read.reason = goal.size() > 2 ? goal.at(2).get<std::string>() : "";
    return read;
}

} // namespace

Expectation::Expectation(const std::vector<BuiltMaterial>& built, ClientState start,
                         std::vector<std::string> backgroundPrograms)
    : materials(built), background(std::move(backgroundPrograms)) {
    standOn(std::move(start));
}

/// From now on all is expected to be as it is in that state.
void Expectation::standOn(ClientState start) {
    before = std::move(start);
    goals = {};
    goals.versions = before.versions;
    for (const auto& [key, value] : before.settings.items()) {
        if (!isCheckTime(key)) {
            goals.settings[key] = value;
        }
    }
    for (const auto& [name, file] : before.update) {
        goals.update.push_back(comparablePath(file.path));
    }
    for (const PendingMove& move : before.pending.moves) {
        ++(move.to.empty() ? goals.deletes : goals.replaces);
    }
    for (const BuiltMaterial& material : materials) {
        RowGoal& goal = goals.rows[material.plan.name];
        goal.absent = before.files.count(comparablePath(material.path)) == 0;
        goal.version = before.versionAt(material.path).value_or("");
    }
}

void Expectation::takeOverRows(const Json& rows) {
    for (auto& [name, goal] : goals.rows) {
        // A refusal is of one run; the next one says anew what became of the material.
        if (goal.state == "refused") {
            goal.state = "left";
            goal.reason.clear();
        }
        if (rows.contains(everyRow)) {
            goal = readGoal(rows.at(everyRow));
        }
    }
    for (const auto& [name, goal] : rows.items()) {
        if (name == everyRow) {
            continue;
        }
        if (goals.rows.count(name) == 0) {
            throw std::runtime_error("expectation of an unknown material \"" + name + "\"");
        }
        goals.rows[name] = readGoal(goal);
    }
}

/// The package's stored record: a status, or that there is none.
void Expectation::takeOverRecord(const Json& record, const BuiltUpgrade& upgrade) {
    if (record == "none") {
        goals.settings[recordKey] = "";
    } else if (record.is_object()) {
        goals.settings[recordKey] =
            recordText(upgrade, record.value("status", 0), record.value("byUser", false));
    } else {
        goals.settings[recordKey] = recordText(upgrade, record.get<int>(), false);
    }
}

void Expectation::takeOver(const Json& expect, const PhaseFacts& facts) {
    takeOverRows(expect.value("materials", Json::object()));
    const Json versions = expect.value("versions", Json::object());
    for (const auto& [path, version] : versions.items()) {
        goals.versions[comparablePath(path)] = version.get<std::string>();
    }
    const Json ofMaterials = expect.value("versionsOf", Json::array());
    for (const BuiltMaterial& material : materials) {
        if (isNamed(ofMaterials, material.plan.name)) {
            goals.versions[comparablePath(material.path)] = material.plan.version;
        }
    }
    const Json settings = expect.value("settings", Json::object());
    for (const auto& [key, value] : settings.items()) {
        goals.settings[key] = value;
    }
    if (expect.contains("update")) {
        goals.update.clear();
        for (const Json& name : expect.at("update")) {
            goals.update.push_back(comparablePath(name.get<std::string>()));
        }
        std::sort(goals.update.begin(), goals.update.end());
    }
    if (facts.isRestart) {
        goals.replaces = 0;
        goals.deletes = 0;
    }
    const Json delayed = expect.value("delayed", Json::object());
    goals.replaces = delayed.value("replaces", goals.replaces);
    goals.deletes = delayed.value("deletes", goals.deletes);
}

/// The client's state in one word, for a run in which more than one thing may come about.
void Expectation::compareLoosely(Comparison& comparison) {
    const std::string state = comparison.expect.at(looseMember).get<std::string>();
    if (state != "either" && state != "complete") {
        throw std::runtime_error("expect, client: neither \"either\" nor \"complete\": " + state);
    }
    compareWhole(comparison, state == "complete");
    compareEnd(comparison);
}

std::vector<std::string> Expectation::compare(const Json& expect, const PhaseFacts& facts,
                                              const BuiltUpgrade& upgrade, const ClientState& now) {
    NamedValues values = valuesOf(materials);
    addValues(upgrade, values);
    const Json filled = filledIn(expect, values);
    if (filled.contains(looseMember)) {
        Comparison comparison{materials, upgrade, goals, before, now, facts, filled};
        compareLoosely(comparison);
        standOn(now);
        return comparison.differences;
    }
    takeOver(filled, facts);
    if (filled.contains("record")) {
        takeOverRecord(filled.at("record"), upgrade);
    }
    Comparison comparison{materials, upgrade, goals, before, now, facts, filled};
    compareRows(comparison);
    compareFiles(comparison);
    compareStores(comparison);
    compareFileList(comparison);
    if (facts.isRestart) {
        comparison.differences.insert(comparison.differences.end(), facts.report.complaints.begin(),
                                      facts.report.complaints.end());
    } else {
        compareRun(comparison);
        comparePrograms(comparison, background);
    }
    before = now;
    return comparison.differences;
}

} // namespace sandbox
