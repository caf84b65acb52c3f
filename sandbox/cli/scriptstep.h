#pragma once

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

} // namespace sandbox
