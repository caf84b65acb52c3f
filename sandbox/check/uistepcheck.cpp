#include <array>

#include "sandbox/check/members.h"
#include "sandbox/check/scenarioparts.h"

namespace sandbox::check {
namespace {

using Json = nlohmann::json;

constexpr std::array<const char*, 5> commands{"check", "download", "install", "ignore", "cancel"};
constexpr std::array<const char*, 3> numberSteps{"wait", "waitReport", "waitRun"};
constexpr std::array<const char*, 5> textSteps{"waitText", "waitLog", "waitFailure", "waitProgram",
                                               "waitVersion"};
constexpr std::array<const char*, 3> packageSteps{"release", "waitEnd", "waitHeld"};

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

class UiStepCheck {
public:
    UiStepCheck(const JsonText& whole, Mistakes& found) : scenario(whole), mistakes(found) {}

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
            checkMember(memberOf(place, name), name, value);
        }
    }

private:
    void checkMember(const std::string& place, const std::string& name, const Json& value) {
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
    Mistakes& mistakes;
};

/// Each member by itself, so that every wrong one is told.
void checkSet(const JsonText& scenario, const std::string& place, const Json& change,
              const SetRefusal& refusalOfSet, Mistakes& mistakes) {
    for (const auto& [name, value] : change.items()) {
        Json one = Json::object();
        one[name] = value;
        if (const std::string why = refusalOfSet(one); !why.empty()) {
            mistakes.add(scenario.lineOf(memberOf(place, name)), "set-refused", why);
        }
    }
}

} // namespace

void checkUiSteps(const JsonText& scenario, const std::string& pointer, const Json& steps,
                  Mistakes& mistakes) {
    for (std::size_t i = 0; i < steps.size(); ++i) {
        UiStepCheck(scenario, mistakes).checkStep(elementOf(pointer, i), steps[i]);
    }
}

void checkSets(const JsonText& scenario, const SetRefusal& refusalOfSet, Mistakes& mistakes) {
    const Json& phases = listAt(scenario.value(), "phases");
    for (std::size_t i = 0; refusalOfSet && i < phases.size(); ++i) {
        const std::string phase = elementOf("/phases", i);
        checkSet(scenario, memberOf(phase, "set"), objectAt(phases[i], "set"), refusalOfSet,
                 mistakes);
        const Json& steps = listAt(phases[i], "ui");
        for (std::size_t step = 0; step < steps.size(); ++step) {
            const std::string place = elementOf(memberOf(phase, "ui"), step);
            checkSet(scenario, memberOf(place, "set"), objectAt(steps[step], "set"), refusalOfSet,
                     mistakes);
        }
    }
}

} // namespace sandbox::check
