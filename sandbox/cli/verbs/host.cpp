#include "sandbox/cli/verbs/host.h"

#include <CLI/CLI.hpp>

#include "sandbox/cli/verbs/scenariooptions.h"
#include "sandbox/platform/stopsignal.h"

namespace sandbox {
namespace {

int host(const ScenarioOptions& options, Output& output) {
    watchStopSignals(); // the host gets Ctrl+C too, and ends in order
    const auto system = newSystem(options);
    const auto session = newSession(options, *system, output.console());
    const bool good = session->host();
    output.result(session->told().hosting());
    return good ? exitAsExpected : exitDifferent;
}

} // namespace

Verb addHost(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "host", "Lay a client out and keep its host and the scenario's platform running, for ui "
                "and set in other terminals, until Ctrl+C or stop");
    const auto options = std::make_shared<ScenarioOptions>();
    addScenario(command, *options);
    endHelp(command, {{"host sandbox/scenarios/package-user.json"},
                      "the host ended in order",
                      "the host ended with a failure"});
    return {command, [options](Output& output) {
                return host(*options, output);
            }};
}

} // namespace sandbox
