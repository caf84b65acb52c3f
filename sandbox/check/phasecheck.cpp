#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>

#include "sandbox/check/members.h"
#include "sandbox/check/scenarioparts.h"
#include "sandbox/check/scenarioshape.h"
#include "sandbox/check/targetpath.h"
#include "sandbox/faults/fault.h"

namespace sandbox::check {
namespace {

using Json = nlohmann::json;

constexpr const char* everyMaterial = "*";
constexpr const char* inUseFault = "in-use";
constexpr const char* updatePrefix = "update\\";
constexpr std::array<const char*, 2> channelFiles{"patchlib0.dat", "patchlib1.dat"};
constexpr std::size_t mostQuestions = 5; // of one conversation

/// Members that a restart takes no notice of, in the phase and in what it expects.
constexpr std::array<const char*, 8> runMembers{"asks", "offers", "questions", "faults",
                                                "host", "ui",     "upgrade",   "set"};
constexpr std::array<const char*, 12> runExpectations{
    "downloads",  "programs",      "notifications",    "events",
    "logs",       "hostExit",      "failures",         "reports",
    "fileChecks", "packageChecks", "packageDownloads", "fileDownloads"};
/// All that is looked at where `client` stands for the rest.
constexpr std::array<const char*, 7> besideClient{"client",   "versions", "logs",   "failures",
                                                  "hostExit", "anything", "comment"};

/// What the whole scenario has, which a step may name.
struct Nameable {
    std::set<std::string> materials;
    bool hasBulk = false;        ///< materials by a rule
    std::set<std::string> paths; ///< keys of the files that a client may come to have
    const StandingFiles& standing;
    NamedFields fields;
};

/// Of the object `upgrade` that it has.
void addPackagePaths(const Json& whole, std::set<std::string>& paths) {
    for (const Json& file : listAt(objectAt(objectAt(whole, "upgrade"), "package"), "files")) {
        paths.insert(targetKey(textAt(file, "path")));
    }
}

std::set<std::string> pathsIn(const Json& scenario, const StandingFiles& standing) {
    std::set<std::string> paths = moduleKeys();
    paths.insert(channelFiles.begin(), channelFiles.end());
    for (const auto& [key, file] : standing) {
        paths.insert(key);
    }
    for (const Json& material : listAt(objectAt(scenario, "platform"), "materials")) {
        paths.insert(targetKey(textAt(material, "path")));
        paths.insert(targetKey(textAt(objectAt(material, "parameters"), "file_path")));
    }
    addPackagePaths(scenario, paths);
    for (const Json& phase : listAt(scenario, "phases")) {
        addPackagePaths(phase, paths);
    }
    paths.erase("");
    return paths;
}

Nameable nameableIn(const JsonText& scenario, const StandingFiles& standing) {
    const Json& platform = objectAt(scenario.value(), "platform");
    Nameable known{{},
                   platform.contains("bulk"),
                   pathsIn(scenario.value(), standing),
                   standing,
                   namedFieldsIn(scenario)};
    for (const Json& material : listAt(platform, "materials")) {
        known.materials.insert(textAt(material, "name"));
    }
    return known;
}

class PhaseCheck {
public:
    PhaseCheck(const JsonText& whole, std::size_t number, const Nameable& all, Mistakes& found)
        : scenario(whole), pointer(elementOf("/phases", number)),
          phase(whole.value().at("phases").at(number)), known(all), mistakes(found) {}

    void run() {
        checkNames(memberOf(pointer, "offers"), phase.value("offers", Json()));
        const Json& expect = objectAt(phase, "expect");
        const std::string place = memberOf(pointer, "expect");
        checkNames(memberOf(place, "versionsOf"), expect.value("versionsOf", Json()));
        checkNames(memberOf(place, "downloads"), expect.value("downloads", Json()));
        checkNames(memberOf(memberOf(place, "fileList"), "of"),
                   objectAt(expect, "fileList").value("of", Json()));
        checkStates(memberOf(place, "materials"), objectAt(expect, "materials"));
        checkQuestions();
        checkMeaning(place, expect);
        checkFaults();
        if (!known.hasBulk) {
            checkNamedFields(scenario, place, known.fields, mistakes);
        }
        checkUiSteps(scenario, memberOf(pointer, "ui"), listAt(phase, "ui"), mistakes);
    }

private:
    void checkQuestions() {
        const Json told = phase.value("questions", Json());
        const Json list = told.is_array() ? told : Json::array({told});
        for (const Json& number : list) {
            if (number.is_number_unsigned() && number.get<std::uint64_t>() > mostQuestions) {
                add(memberOf(pointer, "questions"), "value-range",
                    "a conversation has at most " + std::to_string(mostQuestions) +
                        " questions, not " + number.dump());
            }
        }
    }

    /// What would be taken and never looked at.
    void checkMeaning(const std::string& place, const Json& expect) {
        const bool isRestart = phase.value("do", Json()) == "restart";
        for (const auto& [name, value] : phase.items()) {
            if (isRestart && isOneOf(runMembers, name)) {
                add(memberOf(pointer, name), "member-idle", "\"" + name + "\" is of a run only");
            }
        }
        for (const auto& [name, value] : expect.items()) {
            if (isRestart && isOneOf(runExpectations, name)) {
                add(memberOf(place, name), "member-idle", "\"" + name + "\" is of a run only");
            } else if (expect.contains("client") && !isOneOf(besideClient, name)) {
                add(memberOf(place, name), "member-idle",
                    "\"" + name + "\" is not looked at beside \"client\"");
            } else if (name == "anything" && !expect.contains("client")) {
                add(memberOf(place, name), "member-idle",
                    "\"anything\" is looked at beside \"client\" only");
            }
        }
    }

    /// A list that names a material which is not there would only expect less.
    void checkNames(const std::string& place, const Json& list) {
        for (std::size_t i = 0; list.is_array() && i < list.size(); ++i) {
            checkName(elementOf(place, i), list[i]);
        }
    }

    void checkName(const std::string& place, const Json& name) {
        if (!known.hasBulk && !isOneOf(known.materials, name)) {
            add(place, "name-unknown", "there is no material " + name.dump());
        }
    }

    void checkStates(const std::string& place, const Json& materials) {
        for (const auto& [name, goal] : materials.items()) {
            const std::string at = memberOf(place, name);
            if (name != everyMaterial) {
                checkName(at, name);
            }
            if (!goal.is_array() || goal.empty()) {
                add(at, "member-kind", "a state is an array of state, version and reason");
            } else if (!isOneOf(stateWords(), goal[0])) {
                add(at, "value-unknown", "there is no state " + goal[0].dump());
            } else if (goal.size() > 1 && !goal[1].is_string() && !goal[1].is_null()) {
                add(at, "member-kind", "the version of a state is a text or null");
            } else if (goal.size() > 2 && !isOneOf(reasonWords(), goal[2])) {
                add(at, "value-unknown", "nothing is refused for the reason " + goal[2].dump());
            }
        }
    }

    /// One behind the other, so that each wrong one is told; how they go together too.
    void checkFaults() {
        const Json& faults = listAt(phase, "faults");
        Json right = Json::array();
        for (std::size_t i = 0; i < faults.size(); ++i) {
            const std::string place = elementOf(memberOf(pointer, "faults"), i);
            std::set<std::string> files = known.materials;
            if (known.hasBulk) {
                files.insert(textAt(faults[i], "on"));
            }
            right.push_back(faults[i]);
            try {
                checkInUse(place, readFaults(right, files).back());
            } catch (const std::exception& error) {
                add(place, "fault-unknown", error.what());
                right.erase(right.size() - 1);
            }
        }
    }

    /// A file in use is one that the client may have, and what keeps it a program of its own.
    void checkInUse(const std::string& place, const Fault& fault) {
        if (fault.name != inUseFault) {
            return;
        }
        const std::string key = targetKey(fault.text("file"));
        const bool isOfUpdate = key.rfind(updatePrefix, 0) == 0;
        if (!known.hasBulk && !isOfUpdate && known.paths.count(key) == 0) {
            add(memberOf(place, "file"), "name-unknown",
                "the client never has a file \"" + fault.text("file") + "\"");
        }
        checkHolder(scenario, known.standing, memberOf(place, "by"), fault.text("by"), mistakes);
    }

    void add(const std::string& place, const char* code, const std::string& text) {
        mistakes.add(scenario.lineOf(place), code, text);
    }

    const JsonText& scenario;
    std::string pointer;
    const Json& phase;
    const Nameable& known;
    Mistakes& mistakes;
};

} // namespace

void checkPhases(const JsonText& scenario, const StandingFiles& standing, Mistakes& mistakes) {
    const Nameable known = nameableIn(scenario, standing);
    const Json& phases = listAt(scenario.value(), "phases");
    for (std::size_t i = 0; i < phases.size(); ++i) {
        if (phases[i].is_object()) {
            PhaseCheck(scenario, i, known, mistakes).run();
        }
    }
}

Expected expectedOf(const JsonText& scenario, const std::string& material) {
    Expected expected;
    for (const Json& phase : listAt(scenario.value(), "phases")) {
        const Json& materials = objectAt(objectAt(phase, "expect"), "materials");
        const bool isNamed = materials.contains(material);
        const Json& goal = listAt(materials, isNamed ? material.c_str() : everyMaterial);
        const Json state = goal.empty() ? Json() : goal[0];
        expected.isPlaced = expected.isPlaced || state == "placed" || state == "waiting";
        if (goal.size() > 2 && goal[2].is_string()) {
            expected.reasons.insert(goal[2].get<std::string>());
        }
    }
    return expected;
}

} // namespace sandbox::check
