#pragma once

#include <memory>
#include <string>

#include "sandbox/cli/session.h"
#include "sandbox/cli/verb.h"

/// The scenario and the machine that verbs carry out a scenario on.
namespace sandbox {

struct ScenarioOptions {
    ScenarioOptions();

    std::string scenario;
    std::string folder;
    bool windows = false;
    std::string binaries; ///< empty for those beside xsandbox
    std::string wine;
};

/// `options` outlive the command.
void addScenario(CLI::App* command, ScenarioOptions& options);

std::unique_ptr<ClientSystem> newSystem(const ScenarioOptions& options);

/// Throws std::runtime_error when the scenario cannot be read.
std::unique_ptr<Session> newSession(const ScenarioOptions& options, ClientSystem& system,
                                    Console& console);

} // namespace sandbox
