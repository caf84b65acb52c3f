#include "sandbox/cli/verbs/check.h"

#include <CLI/CLI.hpp>

#include "sandbox/check/offercheck.h"
#include "sandbox/check/scenariocheck.h"
#include "sandbox/cli/offerfolder.h"
#include "sandbox/cli/scenario.h"
#include "sandbox/platform/filewrites.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;
using check::Mistake;

struct CheckOptions {
    std::string path;
    std::string offer; ///< folder to be written
};

/// What only the reader of scenarios refuses.
void addRefusal(const std::string& file, std::vector<Mistake>& mistakes) {
    try {
        readScenario(file);
    } catch (const std::exception& error) {
        mistakes.push_back({file, 1, "scenario-refused", error.what()});
    }
}

std::vector<Mistake> checkFile(const std::string& file) {
    const auto text = readFile(file);
    if (!text || std::filesystem::is_directory(file)) {
        throw std::runtime_error(file + ": no such scenario");
    }
    std::vector<Mistake> mistakes = check::checkScenario(
        *text, file, [&](const std::string& material) { return hashesIn(file, material); });
    if (mistakes.empty()) {
        addRefusal(file, mistakes);
    }
    return mistakes;
}

void tellMistakes(const std::vector<Mistake>& mistakes, Output& output) {
    Json list = Json::array();
    for (const Mistake& mistake : mistakes) {
        list.push_back({{"file", mistake.file},
                        {"line", mistake.line},
                        {"code", mistake.code},
                        {"text", mistake.text}});
        output.console().line(mistake.file + ":" + std::to_string(mistake.line) + ": " +
                              mistake.text + " [" + mistake.code + "]");
    }
    output.result({{"mistakes", list}});
    output.console().line(mistakes.empty() ? "no mistakes" : counted(mistakes.size(), "mistake"));
}

int checkPath(const CheckOptions& options, Output& output) {
    const bool isOffer = std::filesystem::is_directory(options.path);
    const std::vector<Mistake> mistakes =
        isOffer ? check::checkOffer(options.path) : checkFile(options.path);
    tellMistakes(mistakes, output);
    if (!options.offer.empty()) {
        if (isOffer) {
            throw std::runtime_error("--offer is for a scenario; " + options.path + " is an offer");
        }
        writeOffer(options.path, options.offer);
        output.console().line(options.offer + " has its materials as the platform offers them");
    }
    return mistakes.empty() ? exitAsExpected : exitDifferent;
}

} // namespace

Verb addCheck(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "check", "Tell every mistake of a scenario, or of a folder of materials as the platform "
                 "would offer them, with file and line");
    const auto options = std::make_shared<CheckOptions>();
    command->add_option("path", options->path, "Scenario, or folder with materials.json")
        ->required()
        ->type_name("PATH");
    command
        ->add_option("--offer", options->offer,
                     "Also write the scenario's materials into that new folder, as the platform "
                     "offers them")
        ->type_name("FOLDER");
    endHelp(command, {{"check sandbox/scenarios/small.json", "check mine.json --offer mine-offer"},
                      "no mistakes",
                      "there are mistakes"});
    return {command, [options](Output& output) {
                return checkPath(*options, output);
            }};
}

} // namespace sandbox
