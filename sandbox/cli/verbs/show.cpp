#include "sandbox/cli/verbs/show.h"

#include <CLI/CLI.hpp>

#include "sandbox/cli/runpicture.h"
#include "sandbox/cli/show.h"
#include "sandbox/cli/verbs/runfolder.h"

namespace sandbox {
namespace {

struct ShowOptions {
    std::string folder = usualFolder;
    bool all = false;
};

int show(const ShowOptions& options, Output& output) {
    const nlohmann::json picture = pictureOf(*existingSystem(options.folder), options.all);
    showPicture(picture, options.all, output.console());
    output.result(picture);
    return exitAsExpected;
}

} // namespace

Verb addShow(CLI::App& app) {
    CLI::App* command = app.add_subcommand("show", "Show what stands in the client's folder");
    const auto options = std::make_shared<ShowOptions>();
    addFolder(command, options->folder);
    command->add_flag("--all", options->all, "All entries of filelist.xml");
    endHelp(command, {{"show", "show --all --folder build/demo"}, "the folder holds a run", ""});
    return {command, [options](Output& output) {
                return show(*options, output);
            }};
}

} // namespace sandbox
