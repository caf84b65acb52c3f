#include "sandbox/cli/verbs/host.h"

#include <CLI/CLI.hpp>

#include "sandbox/cli/verbs/number.h"
#include "sandbox/cli/verbs/scenariooptions.h"
#include "sandbox/platform/stopsignal.h"

namespace sandbox {
namespace {

constexpr std::uint32_t longestInterval = 3'600'000;

struct HostingOptions : ScenarioOptions {
    std::uint32_t interval = 100; ///< milliseconds
};

int host(const HostingOptions& options, Output& output) {
    watchStopSignals(); // the host gets Ctrl+C too, and ends in order
    const auto system = newSystem(options);
    const auto session = newSession(options, *system, output.console());
    const bool good = session->host(options.interval);
    output.result(session->told().hosting());
    return good ? exitAsExpected : exitDifferent;
}

} // namespace

Verb addHost(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "host", "Lay a client out and keep its host and the scenario's platform running, for ui "
                "and set in other terminals, until Ctrl+C or stop");
    const auto options = std::make_shared<HostingOptions>();
    addScenario(command, *options);
    takeNumber(command
                   ->add_option("--interval", options->interval,
                                "Milliseconds between two ticks of the host")
                   ->capture_default_str(),
               1, longestInterval);
    endHelp(command, {{"host sandbox/scenarios/package-user.json"},
                      "the host ended in order",
                      "the host ended with a failure"});
    return {command, [options](Output& output) {
                return host(*options, output);
            }};
}

} // namespace sandbox
