#include <CLI/CLI.hpp>
#include <iostream>
#include <limits>

#include "sandbox/cli/layout.h"
#include "sandbox/cli/restart.h"
#include "sandbox/cli/session.h"
#include "sandbox/cli/show.h"
#include "sandbox/platform/hostprocess.h"

namespace {

/// Exit statuses; also told by --help.
constexpr int exitAsExpected = 0;
constexpr int exitDifferent = 1;
constexpr int exitSandboxFailed = 2;

/// Where the build folders of all systems lie.
std::filesystem::path buildFolders() {
    return sandbox::executableFile().parent_path().parent_path();
}

struct Options {
    std::string scenario;
    std::string folder = "sandbox-run";
    std::size_t steps = std::numeric_limits<std::size_t>::max();
    bool windows = false;
    std::string binaries;
    std::string wine = (buildFolders() / "wine").string();
    bool keep = false;
    bool all = false;
};

sandbox::Folders foldersOf(const Options& options) {
    return sandbox::Folders(std::filesystem::absolute(options.folder).lexically_normal());
}

std::unique_ptr<sandbox::ClientSystem> newSystem(const Options& options) {
    return options.windows ? sandbox::wineSystem(foldersOf(options), options.wine)
                           : sandbox::nativeSystem(foldersOf(options));
}

std::filesystem::path binariesOf(const Options& options) {
    if (!options.binaries.empty()) {
        return options.binaries;
    }
    return options.windows ? buildFolders() / "windows" : sandbox::executableFile().parent_path();
}

/// Of a run that is there.
std::unique_ptr<sandbox::ClientSystem> existingSystem(const Options& options) {
    const sandbox::Folders folders = foldersOf(options);
    if (!std::filesystem::exists(folders.config())) {
        throw std::runtime_error(folders.root().string() + " holds no run");
    }
    return sandbox::systemOf(folders);
}

int run(const Options& options, sandbox::Console& console) {
    const auto system = newSystem(options);
    sandbox::Session session(sandbox::readScenario(options.scenario), options.scenario, *system,
                             binariesOf(options), console);
    if (options.keep) {
        session.keepHolders();
    }
    return session.run(options.steps) ? exitAsExpected : exitDifferent;
}

int restart(const Options& options, sandbox::Console& console) {
    const auto system = existingSystem(options);
    const bool good = sandbox::restartMachine(*system, console);
    system->shutDown();
    return good ? exitAsExpected : exitDifferent;
}

int show(const Options& options, sandbox::Console& console) {
    sandbox::showRun(*existingSystem(options), options.all, console);
    return exitAsExpected;
}

void addFolder(CLI::App* command, Options& options) {
    command->add_option("--folder", options.folder, "Folder of the run")->capture_default_str();
}

CLI::App* addRun(CLI::App& app, Options& options) {
    CLI::App* command = app.add_subcommand(
        "run", "Lay a client out, run the update plug-in against the scenario's platform, and "
               "compare what stands with what the scenario expects");
    command->add_option("scenario", options.scenario, "Scenario file")->required();
    addFolder(command, options);
    command->add_flag("--windows", options.windows,
                      "The client is the one built for Windows and runs under Wine, on a Windows "
                      "of the run's own; restart and show go on there");
    command
        ->add_option("--binaries", options.binaries,
                     "Folder of the client's programs and modules; else that of xsandbox, or "
                     "\"windows\" beside it")
        ->type_name("FOLDER");
    command->add_option("--wine", options.wine, "Wine system that the run's own is made after")
        ->type_name("FOLDER")
        ->capture_default_str();
    command->add_option("--steps", options.steps, "Stop after so many steps of the scenario")
        ->type_name("N");
    command->add_flag("--keep", options.keep,
                      "Leave programs that keep files in use, and the Windows of the run, "
                      "running at the end");
    return command;
}

int dispatch(int count, char** arguments) {
    CLI::App app("Sandbox of the update plug-in: a client folder, its sibling modules, a host and "
                 "an update platform on loopback.");
    app.footer("Exit status: 0 everything is as expected, 1 something differs, 2 the sandbox "
               "itself failed or was called wrongly.");
    app.require_subcommand(0, 1); // none is told below: a wrong one is to be named first
    Options options;
    const CLI::App* runCommand = addRun(app, options);
    CLI::App* restartCommand = app.add_subcommand(
        "restart", "Do to the client what a restart of the machine does: end the programs that "
                   "keep files in use and carry out the delayed moves");
    addFolder(restartCommand, options);
    CLI::App* showCommand = app.add_subcommand("show", "Show what stands in the client's folder");
    addFolder(showCommand, options);
    showCommand->add_flag("--all", options.all, "All entries of filelist.xml");
    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? exitAsExpected : exitSandboxFailed;
    }

    if (app.get_subcommands().empty()) {
        std::cerr << app.help();
        return exitSandboxFailed;
    }

    sandbox::Console console(sandbox::standardOutput());
    if (runCommand->parsed()) {
        return run(options, console);
    }
    return restartCommand->parsed() ? restart(options, console) : show(options, console);
}

} // namespace

int main(int count, char** arguments) {
    try {
        return dispatch(count, arguments);
    } catch (const std::exception& error) {
        std::cerr << "xsandbox: " << error.what() << "\n";
        return exitSandboxFailed;
    }
}
