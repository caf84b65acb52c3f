#include "sandbox/cli/verbs/run.h"

#include <CLI/CLI.hpp>

#include "sandbox/cli/verbs/number.h"
#include "sandbox/cli/verbs/scenariooptions.h"

namespace sandbox {
namespace {

constexpr std::uint32_t mostSteps = 1'000'000; // of a scenario, far beyond any

struct RunOptions : ScenarioOptions {
    std::size_t steps = mostSteps;
    bool keep = false;
};

int run(const RunOptions& options, Output& output) {
    const auto system = newSystem(options);
    const auto session = newSession(options, *system, output.console());
    if (options.keep) {
        session->keepHolders();
    }
    const bool good = session->run(options.steps);
    output.result(session->told().run());
    if (!good) {
        const std::string folder = " --folder " + system->folders().root().string() + "\" ";
        output.console().line("\"xsandbox explain" + folder + "tells why, \"xsandbox show" +
                              folder + "what stands");
    }
    return good ? exitAsExpected : exitDifferent;
}

} // namespace

Verb addRun(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "run", "Lay a client out, run the update plug-in against the scenario's platform, and "
               "compare what stands with what the scenario expects");
    const auto options = std::make_shared<RunOptions>();
    addScenario(command, *options);
    takeNumber(
        command->add_option("--steps", options->steps, "Stop after so many steps of the scenario"),
        0, mostSteps);
    command->add_flag("--keep", options->keep,
                      "Leave programs that keep files in use, and the Windows of the run, "
                      "running at the end");
    endHelp(command, {{"run sandbox/scenarios/small.json"},
                      "every step ended as the scenario expects",
                      "a step ended differently; the steps after it are left out"});
    return {command, [options](Output& output) {
                return run(*options, output);
            }};
}

} // namespace sandbox
