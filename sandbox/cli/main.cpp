#include <CLI/CLI.hpp>
#include <iostream>
#include <limits>

#include "sandbox/cli/layout.h"
#include "sandbox/cli/restart.h"
#include "sandbox/cli/session.h"
#include "sandbox/cli/set.h"
#include "sandbox/cli/show.h"
#include "sandbox/cli/stop.h"
#include "sandbox/cli/ui.h"
#include "sandbox/platform/hostprocess.h"
#include "sandbox/platform/stopsignal.h"

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
    std::vector<std::string> words;
    std::vector<std::string> changes;
    int limit = 60;
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

sandbox::Session newSession(const Options& options, sandbox::ClientSystem& system,
                            sandbox::Console& console) {
    return {sandbox::readScenario(options.scenario), options.scenario, system, binariesOf(options),
            console};
}

int run(const Options& options, sandbox::Console& console) {
    const auto system = newSystem(options);
    sandbox::Session session = newSession(options, *system, console);
    if (options.keep) {
        session.keepHolders();
    }
    return session.run(options.steps) ? exitAsExpected : exitDifferent;
}

int host(const Options& options, sandbox::Console& console) {
    sandbox::watchStopSignals(); // the host gets Ctrl+C too, and ends in order
    const auto system = newSystem(options);
    return newSession(options, *system, console).host() ? exitAsExpected : exitDifferent;
}

int stop(const Options& options, sandbox::Console& /*console*/) {
    return sandbox::stopHost(foldersOf(options)) ? exitAsExpected : exitDifferent;
}

int set(const Options& options, sandbox::Console& /*console*/) {
    sandbox::applySet(existingSystem(options)->folders(), sandbox::readChange(options.changes));
    return exitAsExpected;
}

int ui(const Options& options, sandbox::Console& console) {
    sandbox::watchStopSignals();
    const sandbox::Folders folders = foldersOf(options);
    const std::chrono::seconds limit(options.limit);
    sandbox::awaitHost(folders, console, limit);
    if (options.words.empty()) {
        sandbox::runUi(folders, console);
        return exitAsExpected;
    }
    return sandbox::doWords(folders, options.words, console, limit) ? exitAsExpected
                                                                    : exitDifferent;
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

void addScenario(CLI::App* command, Options& options) {
    command->add_option("scenario", options.scenario, "Scenario file")->required();
    addFolder(command, options);
    command->add_flag("--windows", options.windows,
                      "The client is the one built for Windows and runs under Wine, on a Windows "
                      "of the run's own; all other verbs go on there");
    command
        ->add_option("--binaries", options.binaries,
                     "Folder of the client's programs and modules; else that of xsandbox, or "
                     "\"windows\" beside it")
        ->type_name("FOLDER");
    command->add_option("--wine", options.wine, "Wine system that the run's own is made after")
        ->type_name("FOLDER")
        ->capture_default_str();
}

/// A verb, and what carries it out.
struct Verb {
    const CLI::App* command;
    int (*carryOut)(const Options& options, sandbox::Console& console);
};

Verb addRun(CLI::App& app, Options& options) {
    CLI::App* command = app.add_subcommand(
        "run", "Lay a client out, run the update plug-in against the scenario's platform, and "
               "compare what stands with what the scenario expects");
    addScenario(command, options);
    command->add_option("--steps", options.steps, "Stop after so many steps of the scenario")
        ->type_name("N");
    command->add_flag("--keep", options.keep,
                      "Leave programs that keep files in use, and the Windows of the run, "
                      "running at the end");
    return {command, run};
}

Verb addHost(CLI::App& app, Options& options) {
    CLI::App* command = app.add_subcommand(
        "host", "Lay a client out and keep its host and the scenario's platform running, for ui "
                "and set in other terminals, until Ctrl+C or stop");
    addScenario(command, options);
    return {command, host};
}

Verb addStop(CLI::App& app, Options& options) {
    CLI::App* command = app.add_subcommand("stop", "End the host of the folder");
    addFolder(command, options);
    return {command, stop};
}

Verb addUi(CLI::App& app, Options& options) {
    CLI::App* command = app.add_subcommand(
        "ui", "Be the client's user interface: show what the package channel tells its host, and "
              "send it what keys ask for");
    addFolder(command, options);
    command
        ->add_option("--do", options.words,
                     "Words to be done in turn in place of keys, each until its answer has come: "
                     "check, download, cancel, install, ignore; a download before a cancel goes "
                     "to its first percent")
        ->delimiter(',')
        ->type_name("WORD,...");
    command->add_option("--limit", options.limit, "Seconds for the host and for each answer")
        ->type_name("N")
        ->capture_default_str();
    return {command, ui};
}

Verb addSet(CLI::App& app, Options& options) {
    CLI::App* command = app.add_subcommand(
        "set", "Change the client or its settings, of which a running host learns at once");
    addFolder(command, options);
    command->add_option("change", options.changes, "What to change")
        ->required()
        ->type_name("KEY=VALUE");
    command->footer("Known keys:\n" + sandbox::namesToSet());
    return {command, set};
}

Verb addRestart(CLI::App& app, Options& options) {
    CLI::App* command = app.add_subcommand(
        "restart", "Do to the client what a restart of the machine does: end the programs that "
                   "keep files in use and carry out the delayed moves");
    addFolder(command, options);
    return {command, restart};
}

Verb addShow(CLI::App& app, Options& options) {
    CLI::App* command = app.add_subcommand("show", "Show what stands in the client's folder");
    addFolder(command, options);
    command->add_flag("--all", options.all, "All entries of filelist.xml");
    return {command, show};
}

int dispatch(int count, char** arguments) {
    CLI::App app("Sandbox of the update plug-in: a client folder, its sibling modules, a host and "
                 "an update platform on loopback.");
    app.footer("Exit status: 0 everything is as expected, 1 something differs, 2 the sandbox "
               "itself failed or was called wrongly.");
    app.require_subcommand(0, 1); // none is told below: a wrong one is to be named first
    Options options;
    const Verb verbs[] = {addRun(app, options), addHost(app, options), addUi(app, options),
                          addSet(app, options), addStop(app, options), addRestart(app, options),
                          addShow(app, options)};
    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? exitAsExpected : exitSandboxFailed;
    }
    sandbox::Console console(sandbox::standardOutput());
    for (const Verb& verb : verbs) {
        if (verb.command->parsed()) {
            return verb.carryOut(options, console);
        }
    }
    std::cerr << app.help();
    return exitSandboxFailed;
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
