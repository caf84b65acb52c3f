#include "sandbox/cli/script.h"

#include <algorithm>

#include "sandbox/cli/notes.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;
using Kind = ScriptStep::Kind;

bool isDelivered(const Json& event, int code) {
    return isKind(event, "delivered") && event.value("type", 0) == NC::packageType &&
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

/// Waits count from the sending: an answer may come before the word that the command was carried
/// out.
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
