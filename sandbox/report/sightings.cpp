#include "sandbox/report/sightings.h"

#include <algorithm>

#include "sandbox/report/plannedmaterials.h"
#include "sandbox/report/spans.h"

namespace sandbox::report {
namespace {

using Json = nlohmann::json;

constexpr const char* ownVersion = "update\\version.dat";
constexpr const char* offer = "BatchGetMaterialMeta"; ///< its answer has the rows

/// Gives the fault to the first of that name that has met none yet.
template <class Items>
bool meet(Items& items, const SandboxFault& fault) {
    const auto met = std::find_if(items.begin(), items.end(), [&](const auto& item) {
        return item.name == fault.on && item.fault.empty();
    });
    if (met == items.end()) {
        return false;
    }
    met->fault = fault.words;
    return true;
}

void seeProgram(KelvarRun& run, const Json& event) {
    const bool isStarted = event.value("started", Json()) == true;
    for (Program& program : run.programs) {
        if (program.outcome.empty() && program.name == textOf(event, "file") &&
            program.parameters == textOf(event, "parameters")) {
            program.outcome =
                isStarted ? "started" : "not started: there is no such program, or it cannot run";
            return;
        }
    }
}

/// What a client does to its own version when a run has ended, which no line tells. Files that
/// were taken back with their group count as moved there, but then another one of it does not.
std::string concludedVersion(const KelvarRun& run) {
    const auto isFailed = [&](std::size_t at) {
        return run.materials[at].hasFailed();
    };
    const auto isOpen = [&](std::size_t at) {
        return run.materials[at].isOpen;
    };
    const std::string path = ownVersion;
    if (std::any_of(run.tried.begin(), run.tried.end(), isFailed)) {
        return path + " stays: it follows, as not every file was placed or left to the restart";
    }
    if (run.rows != run.tried.size() || std::any_of(run.tried.begin(), run.tried.end(), isOpen)) {
        return "whether " + path + " was written, the log does not tell";
    }
    return path + " is to become " +
           (run.targetVersion.empty() ? "the packet's version" : run.targetVersion) +
           ": it follows, as every file was placed or left to the restart; no line tells whether "
           "the store took it";
}

std::string unseenWords(const KelvarRun& run, const Knowledge& known) {
    return known.hasObservations() ? "no write was seen" : concludedVersion(run);
}

} // namespace

void addFaults(KelvarRun& run, const Explanation& told) {
    for (const SandboxFault& fault : faultsOf(run, told)) {
        run.faults.push_back(fault.on + ": " + fault.words);
        const bool isMet = meet(run.questions, fault);
        run.isOfferChanged =
            run.isOfferChanged || (isMet && fault.on == offer && !fault.keepsAnswer);
    }
}

void addMaterialFaults(KelvarRun& run, const Explanation& told) {
    for (const SandboxFault& fault : faultsOf(run, told)) {
        meet(run.materials, fault);
    }
}

void addSightings(KelvarRun& run, const Explanation& told) {
    bool sawVersions = false;
    for (const Json& event : eventsOf(run, told.known)) {
        if (textOf(event, "kind") == "process") {
            seeProgram(run, event);
        } else if (textOf(event, "kind") == "version") {
            run.versions.push_back(textOf(event, "path") + " " + textOf(event, "value"));
            sawVersions = true;
        }
    }
    for (Program& program : run.programs) {
        if (program.outcome.empty()) {
            program.outcome = told.known.hasObservations()
                                  ? "asked for; no start was seen"
                                  : "asked for; whether it started, the log does not tell";
        }
    }
    if (!sawVersions && run.success.value_or(false)) {
        run.versions.push_back(unseenWords(run, told.known));
    }
}

} // namespace sandbox::report
