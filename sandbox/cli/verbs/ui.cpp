#include "sandbox/cli/verbs/ui.h"

#include <CLI/CLI.hpp>
#include <stdexcept>

#include "sandbox/cli/ui.h"
#include "sandbox/cli/uicommands.h"
#include "sandbox/cli/upgraderecord.h"
#include "sandbox/cli/verbs/number.h"
#include "sandbox/cli/verbs/runfolder.h"
#include "sandbox/platform/stopsignal.h"

namespace sandbox {
namespace {

constexpr std::uint32_t mostSeconds = 86'400;

struct UiOptions {
    std::string folder = usualFolder;
    std::vector<std::string> words;
    std::uint32_t limit = 60;
};

int doAll(const Folders& folders, const UiOptions& options, Output& output) {
    nlohmann::json words = nlohmann::json::array();
    bool good = true;
    for (const WordDone& done :
         doWords(folders, options.words, output.console(), std::chrono::seconds(options.limit))) {
        words.push_back({{"word", done.word}, {"fault", done.fault}});
        good = done.fault.empty();
    }
    output.result(
        {{"folder", folders.root().string()}, {"words", words}, {"record", storedRecord(folders)}});
    return good ? exitAsExpected : exitDifferent;
}

int ui(const UiOptions& options, Output& output) {
    if (output.isJson() && options.words.empty()) {
        throw std::runtime_error("keys have no JSON; use --do");
    }
    watchStopSignals();
    const Folders folders = foldersOf(options.folder);
    awaitHost(folders, output.console(), std::chrono::seconds(options.limit));
    if (options.words.empty()) {
        runUi(folders, output.console());
        return exitAsExpected;
    }
    return doAll(folders, options, output);
}

} // namespace

Verb addUi(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "ui", "Be the client's user interface: show what the package channel tells its host, and "
              "send it what keys ask for");
    const auto options = std::make_shared<UiOptions>();
    addFolder(command, options->folder);
    command
        ->add_option("--do", options->words,
                     "Words to be done in turn in place of keys, each until its answer has come")
        ->delimiter(',')
        ->type_name("WORD,...");
    takeNumber(command
                   ->add_option("--limit", options->limit,
                                "Seconds for the host, and for each answer once its command has "
                                "arrived")
                   ->capture_default_str(),
               0, mostSeconds);
    endHelp(command, {{"ui", "ui --do check,download,install"},
                      "the user has quit, or every word was answered as a user hopes",
                      "an answer did not come in time, or is not what a user hopes for",
                      "Words:\n" + helpOfCommands()});
    return {command, [options](Output& output) {
                return ui(*options, output);
            }};
}

} // namespace sandbox
