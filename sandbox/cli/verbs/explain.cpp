#include "sandbox/cli/verbs/explain.h"

#include <CLI/CLI.hpp>
#include <cstdint>
#include <limits>
#include <stdexcept>

#include "sandbox/cli/verbs/logsource.h"
#include "sandbox/cli/verbs/number.h"
#include "sandbox/report/explanationjson.h"
#include "sandbox/report/section.h"

namespace sandbox {
namespace {

using report::Explanation;
using report::KelvarRun;
using report::Material;
using report::Section;

struct ExplainOptions {
    LogSource source;
    std::string material;
    std::size_t run = 0;
    bool all = false;
    bool overview = false;
};

void print(const Section& section, Console& console) {
    console.heading(section.title);
    for (const std::string& line : section.lines) {
        console.line(line);
    }
    if (!section.titles.empty()) {
        console.table(section.titles, section.rows);
    }
}

void print(const std::vector<Section>& sections, Console& console) {
    for (const Section& section : sections) {
        print(section, console);
    }
}

/// The runs that are asked about: one, all, or the last; of a material, the last that had it.
std::vector<const KelvarRun*> chosenRuns(const Explanation& told, const ExplainOptions& options) {
    std::vector<const KelvarRun*> chosen;
    for (const KelvarRun& run : told.runs) {
        const bool has =
            options.material.empty() || !report::materialsLike(run, options.material).empty();
        if (!has || (options.run != 0 && options.run != run.number)) {
            continue;
        }
        if (!options.all) {
            chosen.clear();
        }
        chosen.push_back(&run);
    }
    return chosen;
}

std::vector<const Material*> chosenMaterials(const KelvarRun& run, const ExplainOptions& options) {
    if (!options.material.empty()) {
        return report::materialsLike(run, options.material);
    }
    std::vector<const Material*> all;
    for (const std::size_t at : run.order) {
        all.push_back(&run.materials[at]);
    }
    return all;
}

void explainForPeople(const Explanation& told, const std::vector<const KelvarRun*>& runs,
                      const ExplainOptions& options, Console& console) {
    if (options.material.empty()) {
        print(report::headSections(told, options.source.title()), console);
    }
    for (const KelvarRun* run : runs) {
        if (options.material.empty()) {
            print(report::runSections(*run, told), console);
        } else {
            console.heading("Run " + std::to_string(run->number));
        }
        for (const Material* row : chosenMaterials(*run, options)) {
            if (!options.overview) {
                print(report::materialSection(*row), console);
            }
        }
        if (options.material.empty()) {
            print(report::channelSections(told, run->toldFrom, run->toldTo), console);
        }
    }
    if (told.runs.empty()) {
        print(report::channelSections(told, 0, std::numeric_limits<std::size_t>::max()), console);
    }
}

nlohmann::json resultOf(const Explanation& told, const std::vector<const KelvarRun*>& runs,
                        const ExplainOptions& options) {
    nlohmann::json list = nlohmann::json::array();
    for (const KelvarRun* run : runs) {
        nlohmann::json one = report::toJson(*run, told);
        if (!options.material.empty()) {
            one["materials"] = nlohmann::json::array();
            for (const Material* row : chosenMaterials(*run, options)) {
                one["materials"].push_back(report::toJson(*row));
            }
        }
        list.push_back(std::move(one));
    }
    return {{"log", report::logJson(told)},
            {"runCount", told.runs.size()},
            {"runs", list},
            {"faults", report::faultWords(told.known)}};
}

int explainLog(const ExplainOptions& options, Output& output) {
    const Explanation told = explain(options.source);
    const auto runs = chosenRuns(told, options);
    if (runs.empty() && options.run != 0 && options.material.empty()) {
        throw std::runtime_error("the log has no run " + std::to_string(options.run) + "; it has " +
                                 std::to_string(told.runs.size()));
    }
    explainForPeople(told, runs, options, output.console());
    if (runs.empty()) {
        output.console().heading(options.material.empty()
                                     ? "No run of the Kelvar channel got past its gate in this log"
                                     : "No run of this log tells of a material " +
                                           options.material);
    }
    output.result(resultOf(told, runs, options));
    return runs.empty() ? exitDifferent : exitAsExpected;
}

} // namespace

Verb addExplain(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "explain", "Tell what was decided about each material, and on what, by the plug-in's own "
                   "log; where the log does not tell, it says so");
    const auto options = std::make_shared<ExplainOptions>();
    addLogSource(command, options->source);
    command->add_option("material,--material", options->material,
                        "Only this material: its name, id, target, or the begin of its hash");
    takeNumber(
        command->add_option("--run", options->run, "The N-th run of the log in place of the last"),
        1, std::numeric_limits<std::uint32_t>::max());
    command->add_flag("--all", options->all, "All runs of the log");
    command->add_flag("--overview", options->overview, "One line a material, without its tests");
    endHelp(command, {{"explain --folder build/demo --run 1 --overview",
                       "explain m07 --folder build/demo", "explain --log client.log --all"},
                      "it is told",
                      "the log has no run, or none that tells of the material"});
    return {command, [options](Output& output) {
                return explainLog(*options, output);
            }};
}

} // namespace sandbox
