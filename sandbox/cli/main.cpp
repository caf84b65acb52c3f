#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <map>

#include "sandbox/cli/helpform.h"
#include "sandbox/cli/verb.h"
#include "sandbox/cli/verbs/check.h"
#include "sandbox/cli/verbs/doctor.h"
#include "sandbox/cli/verbs/explain.h"
#include "sandbox/cli/verbs/faults.h"
#include "sandbox/cli/verbs/host.h"
#include "sandbox/cli/verbs/new.h"
#include "sandbox/cli/verbs/restart.h"
#include "sandbox/cli/verbs/run.h"
#include "sandbox/cli/verbs/set.h"
#include "sandbox/cli/verbs/show.h"
#include "sandbox/cli/verbs/stop.h"
#include "sandbox/cli/verbs/timeline.h"
#include "sandbox/cli/verbs/ui.h"

namespace {

using sandbox::Output;
using sandbox::Verb;

std::vector<Verb> addVerbs(CLI::App& app) {
    return {
        sandbox::addRun(app),      sandbox::addHost(app),   sandbox::addUi(app),
        sandbox::addSet(app),      sandbox::addStop(app),   sandbox::addRestart(app),
        sandbox::addShow(app),     sandbox::addFaults(app), sandbox::addDoctor(app),
        sandbox::addNew(app),      sandbox::addCheck(app),  sandbox::addExplain(app),
        sandbox::addTimeline(app),
    };
}

/// How a verb is to tell; the same for all.
struct Form {
    bool json = false;
    sandbox::ColorWish color = sandbox::ColorWish::whereSeen;
};

/// Adds what all verbs have.
void complete(CLI::App* command, Form& form) {
    const std::map<std::string, sandbox::ColorWish> wishes{
        {"auto", sandbox::ColorWish::whereSeen},
        {"always", sandbox::ColorWish::always},
        {"never", sandbox::ColorWish::never},
    };
    command->group("Verbs");
    command->add_flag("--json", form.json, "Print one JSON object in place of text");
    command->add_option("--color", form.color, "Colours: auto, always or never")
        ->transform(CLI::CheckedTransformer(wishes).description(""))
        ->option_text("WHEN");
}

/// The verb that was asked for, also in a call that is wrong behind it.
const Verb* calledVerb(const std::vector<Verb>& verbs) {
    const auto isCalled = [](const Verb& verb) {
        return verb.command->parsed();
    };
    const auto found = std::find_if(verbs.begin(), verbs.end(), isCalled);
    return found == verbs.end() ? nullptr : &*found;
}

std::string nameOf(const Verb* verb) {
    return verb == nullptr ? "" : verb->command->get_name();
}

int carryOut(const Verb& verb, Output& output) {
    const std::string name = nameOf(&verb);
    try {
        const int status = verb.carryOut(output);
        output.end(name, status);
        return status;
    } catch (const std::exception& error) {
        std::cerr << "xsandbox: " << error.what() << "\n";
        output.fail(name, error.what());
        return sandbox::exitSandboxFailed;
    }
}

/// Help and version were asked for, or the call is wrong.
int endEarly(const CLI::App& app, const CLI::ParseError& error, const std::string& verb,
             Output& output) {
    if (error.get_exit_code() == 0) {
        return app.exit(error);
    }
    std::cerr << "xsandbox: " << error.what() << "\nSee \"xsandbox " << verb
              << (verb.empty() ? "" : " ") << "--help\".\n";
    output.fail(verb, error.what());
    return sandbox::exitSandboxFailed;
}

void describe(CLI::App& app) {
    const auto terminal = sandbox::standardOutput(sandbox::ColorWish::never);
    app.formatter(sandbox::helpForm(terminal.width));
    app.set_version_flag("--version", "xsandbox " XSANDBOX_VERSION)
        ->description("Print the version and exit");
    app.footer("Exit status:\n"
               "  0  everything is as expected\n"
               "  1  something differs\n"
               "  2  the sandbox itself failed or was called wrongly\n\n"
               "\"xsandbox VERB --help\" tells the options of a verb, with an example.");
    app.require_subcommand(0, 1); // none is told below: a wrong one is to be named first
}

/// A wrong call may end before the flag is read, and is told as JSON all the same.
bool asksForJson(const std::vector<std::string>& arguments) {
    return std::find(arguments.begin(), arguments.end(), "--json") != arguments.end();
}

int dispatch(int count, char** arguments) {
    CLI::App app("Sandbox of the update plug-in: a client folder, its sibling modules, a host and "
                 "an update platform on loopback.",
                 "xsandbox");
    describe(app);
    const std::vector<Verb> verbs = addVerbs(app);
    Form form;
    for (const Verb& verb : verbs) {
        complete(verb.command, form);
    }
    const auto newOutput = [&form](bool asJson) {
        return Output(std::cout, sandbox::standardOutput(form.color), asJson);
    };
    try {
        app.parse(count, arguments);
    } catch (const CLI::ParseError& error) {
        Output output = newOutput(asksForJson({arguments + 1, arguments + count}));
        return endEarly(app, error, nameOf(calledVerb(verbs)), output);
    }
    if (const Verb* verb = calledVerb(verbs)) {
        Output output = newOutput(form.json);
        return carryOut(*verb, output);
    }
    std::cerr << app.help();
    return sandbox::exitSandboxFailed;
}

} // namespace

int main(int count, char** arguments) {
    try {
        return dispatch(count, arguments);
    } catch (const std::exception& error) {
        std::cerr << "xsandbox: " << error.what() << "\n";
        return sandbox::exitSandboxFailed;
    }
}
