#include "sandbox/cli/verbs/scenariooptions.h"

#include <CLI/CLI.hpp>

#include "sandbox/cli/verbs/runfolder.h"
#include "sandbox/platform/hostprocess.h"

namespace sandbox {
namespace {

/// Where the build folders of all systems lie.
std::filesystem::path buildFolders() {
    return executableFile().parent_path().parent_path();
}

std::filesystem::path binariesOf(const ScenarioOptions& options) {
    if (!options.binaries.empty()) {
        return options.binaries;
    }
    return options.windows ? buildFolders() / "windows" : executableFile().parent_path();
}

} // namespace

ScenarioOptions::ScenarioOptions()
    : folder(usualFolder), wine((buildFolders() / "wine").string()) {}

void addScenario(CLI::App* command, ScenarioOptions& options) {
    command->add_option("scenario", options.scenario, "Scenario file")
        ->required()
        ->type_name("FILE");
    addFolder(command, options.folder);
    command->add_flag("--windows", options.windows,
                      "The client is the one built for Windows and runs under Wine, on a Windows "
                      "of the run's own; all other verbs go on there");
    command
        ->add_option("--binaries", options.binaries,
                     "Folder of the client's programs and modules; else that of xsandbox, or "
                     "\"windows\" beside it")
        ->type_name("FOLDER");
    command
        ->add_option("--wine", options.wine,
                     "Wine system that the run's own is made after; else \"wine\" beside the "
                     "folder of xsandbox")
        ->type_name("FOLDER");
}

std::unique_ptr<ClientSystem> newSystem(const ScenarioOptions& options) {
    const Folders folders = foldersOf(options.folder);
    return options.windows ? wineSystem(folders, options.wine) : nativeSystem(folders);
}

std::unique_ptr<Session> newSession(const ScenarioOptions& options, ClientSystem& system,
                                    Console& console) {
    return std::make_unique<Session>(readScenario(options.scenario), options.scenario, system,
                                     binariesOf(options), console);
}

} // namespace sandbox
