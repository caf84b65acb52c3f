#include "sandbox/cli/script.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "sandbox/cli/notes.h"
#include "sandbox/cli/scenariopart.h"
#include "sandbox/cli/uicommands.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;
using Kind = ScriptStep::Kind;

struct Member {
    const char* name;
    Kind kind;
    bool isNumber;
};

constexpr std::array<Member, 10> waits{{{"wait", Kind::waitEvent, true},
                                        {"waitText", Kind::waitText, false},
                                        {"waitLog", Kind::waitLog, false},
                                        {"waitFailure", Kind::waitFailure, false},
                                        {"waitProgram", Kind::waitProgram, false},
                                        {"waitReport", Kind::waitReport, true},
                                        {"waitRun", Kind::waitRun, true},
                                        {"waitEnd", Kind::waitEnd, false},
                                        {"waitVersion", Kind::waitVersion, false},
                                        {"waitHeld", Kind::waitHeld, false}}};

ScriptStep readCommand(const std::string& word) {
    const auto code = commandOf(word);
    if (!code) {
        throw std::runtime_error("ui: there is no command \"" + word + "\"");
    }
    return {Kind::command, *code, "", {}, word};
}

ScriptStep readStep(const Json& json) {
    if (json.is_string()) {
        return readCommand(json.get<std::string>());
    }
    const ScenarioPart part("a step of ui", json,
                            {"wait", "waitText", "waitLog", "waitFailure", "waitProgram",
                             "waitReport", "waitRun", "waitEnd", "waitVersion", "waitHeld", "set",
                             "release"});
    ScriptStep step;
    step.words = json.dump();
    if (part.has("set")) {
        step.kind = Kind::set;
        step.change = part.object("set");
        return step;
    }
    if (part.has("release")) {
        step.kind = Kind::release;
        return step;
    }
    for (const Member& wait : waits) {
        if (part.has(wait.name)) {
            step.kind = wait.kind;
            step.number = wait.isNumber ? part.need<int>(wait.name) : 0;
            step.text = wait.isNumber ? "" : part.text(wait.name);
            return step;
        }
    }
    throw std::runtime_error("a step of ui does nothing: " + step.words);
}

bool isDelivered(const Json& event, int code) {
    return isKind(event, "delivered") && event.value("type", 0) == packageType &&
           event.value("code", 0) == code;
}

bool holds(const Json& event, const char* kind, const std::string& text) {
    return isKind(event, kind) && event.value("text", "").find(text) != std::string::npos;
}

/// Whether the event is what the step waits for.
bool isAwaited(const Json& event, const ScriptStep& step) {
    switch (step.kind) {
    case Kind::waitEvent:
    case Kind::waitText: {
        const auto note = packageNote(event);
        return note && note->isEvent() &&
               (step.kind == Kind::waitEvent ? note->code == step.number
                                             : note->text.find(step.text) != std::string::npos);
    }
    case Kind::waitLog:
        return holds(event, "log", step.text);
    case Kind::waitFailure:
        return holds(event, "failure", step.text);
    case Kind::waitProgram:
        return isKind(event, "process") && programText(event) == step.text;
    case Kind::waitReport:
        return isKind(event, "event");
    case Kind::waitRun:
        return isKind(event, "runEnded");
    case Kind::waitEnd:
        return isKind(event, "packageEnded");
    default:
        return false;
    }
}

} // namespace

std::vector<ScriptStep> readScript(const Json& steps) {
    std::vector<ScriptStep> read;
    for (const Json& step : steps) {
        read.push_back(readStep(step));
    }
    return read;
}

Script::Script(std::vector<ScriptStep> all, ScriptHands allHands)
    : steps(std::move(all)), hands(std::move(allHands)) {}

void Script::see(const Json& event) {
    seen.push_back(event);
    // A command that comes before the plug-in has started would reach nobody.
    hasBegun = hasBegun || (isKind(event, "host") && event.value("what", "") == "start");
}

void Script::advance() {
    while (hasBegun && !isDone() && carryOut(steps[at])) {
        ++at;
        sent = false;
    }
}

std::string Script::waitsFor() const {
    return isDone() ? "" : "step " + std::to_string(at + 1) + ", " + steps[at].words;
}

bool Script::carryOut(const ScriptStep& step) {
    switch (step.kind) {
    case Kind::command:
        return send(step);
    case Kind::set:
        hands.set(step.change);
        since = seen.size();
        return true;
    case Kind::release:
        hands.release();
        since = seen.size();
        return true;
    default:
        return hasCome(step);
    }
}

/// Waits count from the moment in which the command has reached the client.
bool Script::send(const ScriptStep& step) {
    if (!sent) {
        hands.command(step.number);
        since = seen.size();
        sent = true;
    }
    return std::any_of(seen.begin() + static_cast<std::ptrdiff_t>(since), seen.end(),
                       [&](const Json& event) { return isDelivered(event, step.number); });
}

bool Script::hasCome(const ScriptStep& step) const {
    switch (step.kind) {
    case Kind::waitVersion:
        return hands.clientVersion() == step.text;
    case Kind::waitHeld:
        return hands.isHeld();
    case Kind::waitReport:
    case Kind::waitRun:
        return countSince(0, step) >= static_cast<std::size_t>(step.number);
    case Kind::waitProgram: // comes once in a run, at its own moment
        return countSince(0, step) > 0;
    default:
        return countSince(since, step) > 0;
    }
}

std::size_t Script::countSince(std::size_t begin, const ScriptStep& step) const {
    return static_cast<std::size_t>(
        std::count_if(seen.begin() + static_cast<std::ptrdiff_t>(begin), seen.end(),
                      [&](const Json& event) { return isAwaited(event, step); }));
}

} // namespace sandbox
