#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

namespace sandbox {

/// One step of what happens while the host runs.
struct ScriptStep {
    /// What is done, or until when is waited.
    enum class Kind {
        command,     ///< `number` goes to the client; done when the client has carried it out
        set,         ///< `change` of the client
        release,     ///< the transfer that waits at its gate
        waitEvent,   ///< the package channel has told `number`
        waitText,    ///< `text` is part of what one of its events tells
        waitLog,     ///< `text` is part of a log line
        waitFailure, ///< `text` is part of what a module caught
        waitProgram, ///< the program and its parameters were asked for
        waitReport,  ///< the client has told that it runs, `number` times in this run
        waitRun,     ///< `number` runs of the Kelvar channel have ended in this run
        waitEnd,     ///< a chain of the package channel has ended
        waitVersion, ///< the client's version is that one
        waitHeld,    ///< a transfer waits at its gate
    };
    Kind kind = Kind::command;
    int number = 0;
    std::string text;
    nlohmann::json change = nlohmann::json::object();
    std::string words; ///< as the scenario tells it
};

/// The steps of a run's "ui". Throws std::runtime_error for one that is not in the format.
std::vector<ScriptStep> readScript(const nlohmann::json& steps);

/// What the steps do to the client and ask beside its events.
struct ScriptHands {
    std::function<void(int)> command;
    std::function<void(const nlohmann::json&)> set;
    std::function<void()> release;
    std::function<bool()> isHeld;
    std::function<std::string()> clientVersion;
};

/// Walks the steps while the host runs. Waits count from the last step that did something.
/// One thread.
class Script {
public:
    Script(std::vector<ScriptStep> all, ScriptHands allHands);

    /// Takes an observation of the host's, in order.
    void see(const nlohmann::json& event);

    /// Carries out what can be: every step up to one that has to wait.
    void advance();

    bool isDone() const { return at == steps.size(); }

    /// The step that is waited for, in words; empty when all is done.
    std::string waitsFor() const;

private:
    bool carryOut(const ScriptStep& step);
    bool send(const ScriptStep& step);
    bool hasCome(const ScriptStep& step) const;
    std::size_t countSince(std::size_t begin, const ScriptStep& step) const;

    std::vector<ScriptStep> steps;
    ScriptHands hands;
    std::vector<nlohmann::json> seen;
    std::size_t at = 0;    ///< the step
    std::size_t since = 0; ///< event from which waits count
    bool sent = false;     ///< the command of the step
    bool hasBegun = false; ///< the host
};

} // namespace sandbox
