#include <CLI/CLI.hpp>
#include <algorithm>
#include <iostream>
#include <sstream>

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
#include "sandbox/common/printable.h"

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

sandbox::ColorWish colorWish(const std::string& word) {
    if (word == "always" || word == "never") {
        return word == "always" ? sandbox::ColorWish::always : sandbox::ColorWish::never;
    }
    if (word != "auto") {
        throw CLI::ValidationError("--color", "auto, always or never, not \"" + word + "\"");
    }
    return sandbox::ColorWish::whereSeen;
}

/// Adds what all verbs have.
void complete(CLI::App* command, Form& form) {
    const auto takeColor = [&form](const std::string& word) {
        form.color = colorWish(word);
    };
    command->group("Verbs");
    command->add_flag("--json", form.json, "Print one JSON object in place of text");
    command
        ->add_option_function<std::string>("--color", takeColor, "Colours: auto, always or never")
        ->type_name("WHEN");
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

/// On standard error, which may be a terminal too. The lines of the text stay lines.
void tellError(const std::string& error) {
    std::istringstream lines("xsandbox: " + error);
    for (std::string line; std::getline(lines, line);) {
        std::cerr << sandbox::printable(line) << "\n";
    }
}

int carryOut(const Verb& verb, Output& output) {
    const std::string name = nameOf(&verb);
    try {
        const int status = verb.carryOut(output);
        output.end(name, status);
        return status;
    } catch (const std::exception& error) {
        tellError(error.what());
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
    tellError(error.what());
    std::cerr << "See \"xsandbox " << verb << (verb.empty() ? "" : " ") << "--help\".\n";
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

/// A result that nobody gets is none, as on a full disk.
int statusOfTold(int status) {
    if (std::cout.flush()) {
        return status;
    }
    tellError("standard output cannot be written");
    return sandbox::exitSandboxFailed;
}

} // namespace

int main(int count, char** arguments) {
    try {
        return statusOfTold(dispatch(count, arguments));
    } catch (const std::exception& error) {
        tellError(error.what());
        return sandbox::exitSandboxFailed;
    }
}
