#include "sandbox/cli/verbs/set.h"

#include <CLI/CLI.hpp>

#include "sandbox/cli/set.h"
#include "sandbox/cli/verbs/runfolder.h"

namespace sandbox {
namespace {

struct SetOptions {
    std::string folder = usualFolder;
    std::vector<std::string> changes;
};

int set(const SetOptions& options, Output& output) {
    const nlohmann::json change = readChange(options.changes);
    const Folders folders = existingRun(options.folder);
    applySet(folders, change);
    for (const auto& [key, value] : change.items()) {
        output.console().row(Mark::good, {key + " = " + value.dump()}, {});
    }
    output.result({{"folder", folders.root().string()}, {"set", change}});
    return exitAsExpected;
}

} // namespace

Verb addSet(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "set", "Change the client or its settings, of which a running host learns at once");
    const auto options = std::make_shared<SetOptions>();
    addFolder(command, options->folder);
    command->add_option("change", options->changes, "What to change")
        ->required()
        ->type_name("KEY=VALUE");
    endHelp(command, {{"set login=off settingsWindow=open UPDATE_TYPE=1"},
                      "everything is set",
                      "",
                      "Known keys:\n" + namesToSet()});
    return {command, [options](Output& output) {
                return set(*options, output);
            }};
}

} // namespace sandbox
