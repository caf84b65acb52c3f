#include "sandbox/cli/scriptstep.h"

#include <array>
#include <stdexcept>

#include "sandbox/cli/scenariopart.h"
#include "sandbox/cli/set.h"
#include "sandbox/cli/uicommands.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;
using Kind = ScriptStep::Kind;

/// What stands behind a member's name.
enum class Holds { number, text, change, package };

struct StepMember {
    const char* name;
    Kind kind;
    Holds holds;
};

constexpr const char* packageFile = "package";

constexpr std::array<StepMember, 12> stepMembers{{{"set", Kind::set, Holds::change},
                                                  {"release", Kind::release, Holds::package},
                                                  {"wait", Kind::waitEvent, Holds::number},
                                                  {"waitText", Kind::waitText, Holds::text},
                                                  {"waitLog", Kind::waitLog, Holds::text},
                                                  {"waitFailure", Kind::waitFailure, Holds::text},
                                                  {"waitProgram", Kind::waitProgram, Holds::text},
                                                  {"waitReport", Kind::waitReport, Holds::number},
                                                  {"waitRun", Kind::waitRun, Holds::number},
                                                  {"waitEnd", Kind::waitEnd, Holds::package},
                                                  {"waitVersion", Kind::waitVersion, Holds::text},
                                                  {"waitHeld", Kind::waitHeld, Holds::package}}};

ScriptStep readCommand(const std::string& word) {
    const auto code = commandOf(word);
    if (!code) {
        throw std::runtime_error("ui: there is no command \"" + word + "\"");
    }
    return {Kind::command, *code, "", {}, word};
}

void readValue(const ScenarioPart& part, const StepMember& member, ScriptStep& step) {
    switch (member.holds) {
    case Holds::number:
        step.number = part.need<int>(member.name);
        break;
    case Holds::text:
        step.text = part.text(member.name);
        break;
    case Holds::change:
        step.change = part.object(member.name);
        checkSet(step.change);
        break;
    case Holds::package:
        if (part.text(member.name) != packageFile) {
            throw std::runtime_error("a step of ui is only of the package: " + step.words);
        }
        break;
    }
}

ScriptStep readStep(const Json& json) {
    if (json.is_string()) {
        return readCommand(json.get<std::string>());
    }
    const ScenarioPart part("a step of ui", json,
                            {"set", "release", "wait", "waitText", "waitLog", "waitFailure",
                             "waitProgram", "waitReport", "waitRun", "waitEnd", "waitVersion",
                             "waitHeld"});
    ScriptStep step;
    step.words = json.dump();
    std::size_t found = 0;
    for (const StepMember& member : stepMembers) {
        if (part.has(member.name)) {
            ++found;
            step.kind = member.kind;
            readValue(part, member, step);
        }
    }
    if (found != 1) {
        throw std::runtime_error("a step of ui does not do just one thing: " + step.words);
    }
    return step;
}

} // namespace

std::vector<ScriptStep> readScript(const Json& steps) {
    std::vector<ScriptStep> read;
    for (const Json& step : steps) {
        read.push_back(readStep(step));
    }
    return read;
}

} // namespace sandbox
