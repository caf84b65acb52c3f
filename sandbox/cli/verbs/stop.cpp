#include "sandbox/cli/verbs/stop.h"

#include <CLI/CLI.hpp>

#include "sandbox/cli/stop.h"
#include "sandbox/cli/verbs/runfolder.h"

namespace sandbox {
namespace {

int stop(const std::string& folder, Output& output) {
    const Folders folders = foldersOf(folder);
    const bool hasEnded = stopHost(folders);
    output.console().row(hasEnded ? Mark::good : Mark::fault,
                         {hasEnded ? "the host has ended" : "the host goes on"}, {});
    output.result({{"folder", folders.root().string()}, {"ended", hasEnded}});
    return hasEnded ? exitAsExpected : exitDifferent;
}

} // namespace

Verb addStop(CLI::App& app) {
    CLI::App* command = app.add_subcommand("stop", "End the host of the folder");
    const auto folder = std::make_shared<std::string>(usualFolder);
    addFolder(command, *folder);
    endHelp(command, {{"stop"},
                      "the host has ended",
                      "the host was asked to end and still runs after a minute"});
    return {command, [folder](Output& output) {
                return stop(*folder, output);
            }};
}

} // namespace sandbox
