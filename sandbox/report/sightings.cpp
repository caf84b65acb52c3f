#include "sandbox/report/sightings.h"

#include <algorithm>
#include <limits>

#include "sandbox/report/plannedmaterials.h"

namespace sandbox::report {
namespace {

using Json = nlohmann::json;

/// Times on the log's clock: from the first of the run's lines to that of the next run.
struct Span {
    std::int64_t from = std::numeric_limits<std::int64_t>::min();
    std::int64_t to = std::numeric_limits<std::int64_t>::max();

    bool has(std::optional<std::int64_t> at) const { return at && *at >= from && *at < to; }
};

std::optional<std::int64_t> timeOfLine(const Log& log, std::size_t number) {
    const auto found = std::find_if(log.lines.begin(), log.lines.end(), [&](const LogLine& line) {
        return line.number >= number && line.at;
    });
    return found == log.lines.end() ? std::nullopt : found->at;
}

Span spanOf(const KelvarRun& run, const Explanation& told) {
    Span span;
    if (run.number > 1) {
        span.from = timeOfLine(told.log, told.firstLineOf(run)).value_or(span.from);
    }
    if (run.number < told.runs.size()) {
        span.to = timeOfLine(told.log, told.endLineOf(run)).value_or(span.to);
    }
    return span;
}

std::optional<std::int64_t> timeOf(const Json& event, const Knowledge& known) {
    return known.onLogClock(event["at"].get<std::int64_t>());
}

/// The last question of that name, or material, that has met no fault yet.
std::string* metBy(KelvarRun& run, const std::string& on) {
    for (Question& question : run.questions) {
        if (question.name == on && question.fault.empty()) {
            return &question.fault;
        }
    }
    for (Material& row : run.materials) {
        if (row.name == on && row.fault.empty()) {
            return &row.fault;
        }
    }
    return nullptr;
}

bool isOf(const SandboxFault& fault, const Span& span, const Explanation& told) {
    return !fault.at || !told.known.clockOffset || span.has(told.known.onLogClock(*fault.at));
}

bool isTrue(const Json& object, const char* member) {
    const auto found = object.find(member);
    return found != object.end() && found->is_boolean() && found->get<bool>();
}

void seeProgram(KelvarRun& run, const Json& event) {
    for (Program& program : run.programs) {
        if (program.outcome.empty() && program.name == textOf(event, "file") &&
            program.parameters == textOf(event, "parameters")) {
            program.outcome = isTrue(event, "started") ? "started" : "no such program";
            return;
        }
    }
}

/// What a client does to its own version when a run has ended, which no line tells.
std::string concludedVersion(const KelvarRun& run) {
    const bool all =
        std::all_of(run.materials.begin(), run.materials.end(), [](const Material& row) {
            return row.filter != Material::Filter::passed || row.decision == "placed" ||
                   row.decision == "waiting";
        });
    return all ? "update\\version.dat becomes " + run.targetVersion +
                     ": it follows, as no file was refused behind the filters; no line tells it"
               : "update\\version.dat stays: not every file was placed or left to the restart";
}

} // namespace

std::optional<std::size_t> beginOfSitting(const KelvarRun& run, const Explanation& told) {
    const KelvarRun& before = told.runs[run.number - 2];
    for (const Json& event : told.known.events) {
        const auto at = timeOf(event, told.known);
        if (textOf(event, "kind") != "host" || textOf(event, "what") != "stop" || !at ||
            !before.begin || !run.begin || *at < *before.begin || *at > *run.begin) {
            continue;
        }
        for (const LogLine& line : told.log.lines) {
            if (line.number > before.lastLine && line.at && *line.at > *at) {
                return line.number;
            }
        }
    }
    return std::nullopt;
}

void addFaults(KelvarRun& run, const Explanation& told) {
    const Span span = spanOf(run, told);
    for (const SandboxFault& fault : told.known.faults) {
        if (!isOf(fault, span, told)) {
            continue;
        }
        run.faults.push_back(fault.on + ": " + fault.words);
        if (std::string* met = metBy(run, fault.on)) {
            *met = fault.words;
        }
    }
}

void addSightings(KelvarRun& run, const Explanation& told) {
    const Span span = spanOf(run, told);
    bool sawVersions = false;
    for (const Json& event : told.known.events) {
        if (!span.has(timeOf(event, told.known))) {
            continue;
        }
        if (textOf(event, "kind") == "process") {
            seeProgram(run, event);
        } else if (textOf(event, "kind") == "version") {
            run.versions.push_back(textOf(event, "path") + " " + textOf(event, "value"));
            sawVersions = true;
        }
    }
    for (Program& program : run.programs) {
        if (program.outcome.empty()) {
            program.outcome = "asked for; whether it started, the log does not tell";
        }
    }
    if (!sawVersions && run.success.value_or(false)) {
        run.versions.push_back(concludedVersion(run));
    }
}

} // namespace sandbox::report
