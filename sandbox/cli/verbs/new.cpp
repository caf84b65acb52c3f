#include "sandbox/cli/verbs/new.h"

#include <CLI/CLI.hpp>

#include "sandbox/check/newscenario.h"

namespace sandbox {
namespace {

struct NewOptions {
    std::string file;
    std::vector<std::string> parts;
};

int writeNew(const NewOptions& options, Output& output) {
    check::writeNewScenario(options.file, {options.parts.begin(), options.parts.end()});
    output.result({{"file", options.file}});
    output.console().line(options.file + " is written; \"xsandbox run " + options.file +
                          "\" plays it, \"xsandbox check " + options.file + "\" reads it");
    return exitAsExpected;
}

} // namespace

Verb addNew(CLI::App& app) {
    CLI::App* command =
        app.add_subcommand("new", "Write a scenario that explains itself and runs as it stands");
    const auto options = std::make_shared<NewOptions>();
    command->add_option("file", options->file, "The new file; one that is there is left alone")
        ->required()
        ->type_name("FILE");
    command->add_option("--with", options->parts, "Further parts: " + check::namesOfNewParts())
        ->delimiter(',')
        ->type_name("PART,...");
    endHelp(command,
            {{"new mine.json", "new groups.json --with cabinet,group"}, "the file is written", ""});
    return {command, [options](Output& output) {
                return writeNew(*options, output);
            }};
}

} // namespace sandbox
