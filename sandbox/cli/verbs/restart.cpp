#include "sandbox/cli/verbs/restart.h"

#include <CLI/CLI.hpp>

#include "sandbox/cli/layout.h"
#include "sandbox/cli/restart.h"
#include "sandbox/cli/verbs/runfolder.h"

namespace sandbox {
namespace {

int restartRun(const std::string& folder, Output& output) {
    const auto system = existingSystem(folder);
    refuseHosted(system->folders());
    const MachineRestart restart = restartMachine(*system, output.console());
    system->shutDown();
    output.result({{"folder", system->folders().root().string()}});
    output.result(membersOf(restart));
    return restart.isGood() ? exitAsExpected : exitDifferent;
}

} // namespace

Verb addRestart(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "restart", "Do to the client what a restart of the machine does: end the programs that "
                   "keep files in use and carry out the delayed moves");
    const auto folder = std::make_shared<std::string>(usualFolder);
    addFolder(command, *folder);
    endHelp(command, {{"restart"}, "every delayed move was carried out", "one was not"});
    return {command, [folder](Output& output) {
                return restartRun(*folder, output);
            }};
}

} // namespace sandbox
