#include <algorithm>
#include <array>
#include <cstdint>
#include <stdexcept>

#include "sandbox/check/scenarioparts.h"
#include "sandbox/check/scenarioshape.h"
#include "sandbox/faults/fault.h"

namespace sandbox::check {
namespace {

using Json = nlohmann::json;

constexpr const char* everyMaterial = "*";
constexpr std::array<const char*, 5> commands{"check", "download", "install", "ignore", "cancel"};
constexpr std::array<const char*, 3> numberSteps{"wait", "waitReport", "waitRun"};
constexpr std::array<const char*, 5> textSteps{"waitText", "waitLog", "waitFailure", "waitProgram",
                                               "waitVersion"};
constexpr std::array<const char*, 3> packageSteps{"release", "waitEnd", "waitHeld"};

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

template <class List>
bool isOneOf(const List& list, const Json& word) {
    return word.is_string() &&
           std::find(list.begin(), list.end(), word.get<std::string>()) != list.end();
}

bool isAction(const std::string& name) {
    return name == "set" || isOneOf(numberSteps, name) || isOneOf(textSteps, name) ||
           isOneOf(packageSteps, name);
}

std::size_t actionsOf(const Json& step) {
    std::size_t actions = 0;
    for (const auto& [name, value] : step.items()) {
        actions += isAction(name) ? 1 : 0;
    }
    return actions;
}

std::set<std::string> materialNames(const JsonText& scenario) {
    std::set<std::string> names;
    const Json platform = objectAt(scenario.value(), "platform");
    for (const Json& material : listAt(platform, "materials")) {
        names.insert(textAt(material, "name"));
    }
    return names;
}

class PhaseCheck {
public:
    PhaseCheck(const JsonText& whole, std::size_t number, Mistakes& found)
        : scenario(whole), pointer(elementOf("/phases", number)),
          phase(whole.value().at("phases").at(number)), mistakes(found),
          names(materialNames(whole)),
          hasBulk(objectAt(whole.value(), "platform").contains("bulk")) {}

    void run() {
        checkNames(memberOf(pointer, "offers"), phase.value("offers", Json()));
        const Json expect = objectAt(phase, "expect");
        const std::string place = memberOf(pointer, "expect");
        checkNames(memberOf(place, "versionsOf"), expect.value("versionsOf", Json()));
        checkNames(memberOf(place, "downloads"), expect.value("downloads", Json()));
        checkNames(memberOf(memberOf(place, "fileList"), "of"),
                   objectAt(expect, "fileList").value("of", Json()));
        checkStates(memberOf(place, "materials"), objectAt(expect, "materials"));
        checkQuestions();
        checkMeaning(place, expect);
        checkFaults();
        checkSteps();
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
        if (!hasBulk && !isOneOf(names, name)) {
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

    void checkFaults() {
        const Json faults = listAt(phase, "faults");
        for (std::size_t i = 0; i < faults.size(); ++i) {
            std::set<std::string> known = names;
            if (hasBulk) {
                known.insert(textAt(faults[i], "on"));
            }
            try {
                readFaults(Json::array({faults[i]}), known);
            } catch (const std::exception& error) {
                add(elementOf(memberOf(pointer, "faults"), i), "fault-unknown", error.what());
            }
        }
    }

    void checkSteps() {
        const Json steps = listAt(phase, "ui");
        for (std::size_t i = 0; i < steps.size(); ++i) {
            checkStep(elementOf(memberOf(pointer, "ui"), i), steps[i]);
        }
    }

    void checkStep(const std::string& place, const Json& step) {
        if (step.is_string()) {
            if (!isOneOf(commands, step)) {
                add(place, "value-unknown", "there is no command " + step.dump());
            }
            return;
        }
        if (!step.is_object()) {
            return add(place, "member-kind", "a step is a command or an object");
        }
        if (step.size() == step.count("comment")) {
            return add(place, "member-missing", "the step does nothing");
        }
        if (actionsOf(step) > 1) {
            add(place, "step-several", "the step does more than one thing");
        }
        for (const auto& [name, value] : step.items()) {
            checkStepMember(memberOf(place, name), name, value);
        }
    }

    void checkStepMember(const std::string& place, const std::string& name, const Json& value) {
        const bool isNumber = isOneOf(numberSteps, name);
        const bool isPackage = isOneOf(packageSteps, name);
        const bool isText = isOneOf(textSteps, name) || isPackage;
        if (!isAction(name) && name != "comment") {
            add(place, "member-unknown", "a step has no member \"" + name + "\"");
        } else if (isPackage && value.is_string() && value != "package") {
            add(place, "value-unknown", "\"" + name + "\" is only of \"package\"");
        } else if ((isNumber && !value.is_number_integer()) || (isText && !value.is_string()) ||
                   (name == "set" && !value.is_object())) {
            add(place, "member-kind",
                "\"" + name + "\" is " +
                    (isNumber ? "a number"
                     : isText ? "a text"
                              : "an object"));
        }
    }

    void add(const std::string& place, const char* code, const std::string& text) {
        mistakes.add(scenario.lineOf(place), code, text);
    }

    const JsonText& scenario;
    std::string pointer;
    const Json& phase;
    Mistakes& mistakes;
    std::set<std::string> names;
    bool hasBulk; ///< names by a rule
};

} // namespace

void checkPhases(const JsonText& scenario, Mistakes& mistakes) {
    const Json phases = listAt(scenario.value(), "phases");
    for (std::size_t i = 0; i < phases.size(); ++i) {
        if (phases[i].is_object()) {
            PhaseCheck(scenario, i, mistakes).run();
        }
    }
}

Expected expectedOf(const JsonText& scenario, const std::string& material) {
    Expected expected;
    for (const Json& phase : listAt(scenario.value(), "phases")) {
        const Json materials = objectAt(objectAt(phase, "expect"), "materials");
        const bool isNamed = materials.contains(material);
        const Json goal = listAt(materials, isNamed ? material.c_str() : everyMaterial);
        const Json state = goal.empty() ? Json() : goal[0];
        expected.isPlaced = expected.isPlaced || state == "placed" || state == "waiting";
        if (goal.size() > 2 && goal[2].is_string()) {
            expected.reasons.insert(goal[2].get<std::string>());
        }
    }
    return expected;
}

} // namespace sandbox::check
