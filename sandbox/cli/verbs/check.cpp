#include "sandbox/cli/verbs/check.h"

#include <CLI/CLI.hpp>
#include <algorithm>

#include "sandbox/check/offercheck.h"
#include "sandbox/check/scenariocheck.h"
#include "sandbox/cli/offerfolder.h"
#include "sandbox/cli/scenario.h"
#include "sandbox/cli/set.h"
#include "sandbox/cli/setnames.h"
#include "sandbox/platform/filewrites.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;
using check::Mistake;

struct CheckOptions {
    std::string path;
    std::string offer; ///< folder to be written
};

std::string refusalOfSet(const Json& change) {
    const auto isKnown = [&](const NameToSet& name) {
        return change.contains(name.key);
    };
    if (std::none_of(setNames().begin(), setNames().end(), isKnown)) {
        return "there is no \"" + change.begin().key() +
               "\" to be set; \"xsandbox set --help\" lists what there is";
    }
    try {
        checkSet(change);
        return "";
    } catch (const std::exception& error) {
        return error.what();
    }
}

/// What only the reader of scenarios refuses. It names the file in front.
void addRefusal(const std::string& file, std::vector<Mistake>& mistakes) {
    try {
        readScenario(file);
    } catch (const std::exception& error) {
        const std::string text = error.what();
        const std::string front = file + ": ";
        mistakes.push_back({file, 1, "scenario-refused",
                            text.rfind(front, 0) == 0 ? text.substr(front.size()) : text});
    }
}

std::vector<Mistake> checkFile(const std::string& file) {
    const auto text = readFile(file);
    if (!text) {
        throw std::runtime_error(file + ": no such scenario");
    }
    const auto hashesOf = [&](const std::string& material) {
        return hashesIn(file, material);
    };
    std::vector<Mistake> mistakes = check::checkScenario(*text, file, hashesOf, refusalOfSet);
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

/// Beside mistakes, which may be why it cannot be written, a failure takes nothing away.
void writeOfferBeside(const CheckOptions& options, bool hasMistakes, Output& output) {
    try {
        writeOffer(options.path, options.offer);
        output.console().line(options.offer + " has its materials as the platform offers them");
    } catch (const std::exception& error) {
        if (!hasMistakes) {
            throw;
        }
        output.result({{"offerFailure", error.what()}});
        output.console().line(std::string("the offer is not written: ") + error.what());
    }
}

int checkPath(const CheckOptions& options, Output& output) {
    std::error_code error; // a path may be longer than the system's
    const bool isOffer = std::filesystem::is_directory(options.path, error);
    if (isOffer && !options.offer.empty()) {
        throw std::runtime_error("--offer is for a scenario; " + options.path + " is a folder");
    }
    const std::vector<Mistake> mistakes =
        isOffer ? check::checkOffer(options.path) : checkFile(options.path);
    tellMistakes(mistakes, output);
    if (!options.offer.empty()) {
        writeOfferBeside(options, !mistakes.empty(), output);
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
