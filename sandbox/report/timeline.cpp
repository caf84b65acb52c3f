#include "sandbox/report/timeline.h"

#include <algorithm>
#include <cstdlib>
#include <stdexcept>

#include "sandbox/report/barreader.h"
#include "sandbox/report/plannedmaterials.h"

namespace sandbox::report {
namespace {

using Json = nlohmann::json;

bool begins(const LogLine& line, std::string_view with) {
    return line.text.compare(0, with.size(), with) == 0;
}

constexpr int packageType = 7;
constexpr int versionType = 14;
constexpr std::size_t numberSize = 4;
constexpr unsigned long firstEvent = 100; ///< of the package channel; below are commands to it

constexpr std::string_view programLine = "update plugin, kelvar, exec:";
constexpr std::string_view commands[] = {
    "update plugin, pkg, check version",
    "update plugin, pkg, download pkg",
    "update plugin, pkg, install pkg",
    "update plugin, pkg, cancel download",
};

/// A mark that a line of the log makes; nothing for other lines.
std::optional<TimelineEvent> markOf(const LogLine& line, Lane lane) {
    TimelineEvent mark{Kind::tick, lane, *line.at, *line.at, false, false, "", line.number};
    if (begins(line, "update plugin, pkg, check update")) {
        mark.title = "tick";
        return mark;
    }
    if (begins(line, programLine)) {
        mark.kind = Kind::program;
        mark.title = "program" + line.text.substr(programLine.size());
        return mark;
    }
    const bool isCommand =
        std::any_of(std::begin(commands), std::end(commands),
                    [&](std::string_view command) { return begins(line, command); });
    if (isCommand) {
        constexpr std::size_t words = sizeof "update plugin, pkg, " - 1;
        mark.kind = Kind::command;
        mark.title =
            "the user: " + trimmedEnd(line.text.substr(words, line.text.find(" ...") - words));
        return mark;
    }
    return std::nullopt;
}

/// A run that found nothing to do ends as one that failed.
bool hasFailed(const KelvarRun& run) {
    const bool wasRefused =
        std::any_of(run.questions.begin(), run.questions.end(), [](const Question& question) {
            return question.outcome != Question::Outcome::answered;
        });
    const bool hadWork =
        std::any_of(run.materials.begin(), run.materials.end(),
                    [](const Material& row) { return row.filter == Material::Filter::passed; });
    return !run.success.value_or(true) && (wasRefused || hadWork);
}

void addRunEnds(const Explanation& told, Timeline& timeline) {
    for (const KelvarRun& run : told.runs) {
        if (run.success && run.end) {
            TimelineEvent end{Kind::runEnd,
                              Lane::delivery,
                              *run.end,
                              *run.end,
                              false,
                              hasFailed(run),
                              "run " + std::to_string(run.number) +
                                  " of the Kelvar channel ends: " + run.endWords,
                              run.lastLine};
            timeline.events.push_back(std::move(end));
        }
    }
}

/// The bytes of a record, up to the first zero behind `from`.
std::string recordText(const std::string& hex, std::size_t from) {
    std::string text;
    for (std::size_t i = 2 * from; i + 1 < hex.size(); i += 2) {
        const auto byte = std::strtoul(hex.substr(i, 2).c_str(), nullptr, 16);
        if (byte == 0) {
            break;
        }
        text += static_cast<char>(byte);
    }
    return validUtf8(text);
}

/// A record begins with a number of 32 bits; behind it that of type 14 has the version.
std::string notificationTitle(const Json& event) {
    const std::string hex = textOf(event, "hex");
    const int type =
        event.contains("type") && event["type"].is_number() ? event["type"].get<int>() : 0;
    std::string title = "notification of type " + std::to_string(type);
    if (type == versionType) {
        title += ", version " + recordText(hex, numberSize);
    } else if (type == packageType && hex.size() >= 2) {
        const auto code = std::strtoul(hex.substr(0, 2).c_str(), nullptr, 16);
        title += (code < firstEvent ? ", command " : ", event ") + std::to_string(code);
    }
    return title;
}

void addSeen(const Explanation& told, Timeline& timeline) {
    for (const Json& event : told.known.events) {
        const auto at = told.known.onLogClock(event["at"].get<std::int64_t>());
        const std::string kind = textOf(event, "kind");
        if (!at) {
            continue;
        }
        if (kind == "notification") {
            timeline.events.push_back({Kind::notification, Lane::notifications, *at, *at, false,
                                       false, notificationTitle(event), 0});
        } else if (kind == "host" && textOf(event, "what") != "tick") {
            timeline.events.push_back({Kind::host, Lane::host, *at, *at, false, false,
                                       "the host: " + textOf(event, "what"), 0});
        }
    }
    for (const SandboxFault& fault : told.known.faults) {
        const auto at = fault.at ? told.known.onLogClock(*fault.at) : std::nullopt;
        if (at) {
            timeline.events.push_back({Kind::fault, Lane::faults, *at, *at, false, true,
                                       fault.on + ": " + fault.words, 0});
        }
    }
}

} // namespace

const char* nameOf(Kind kind) {
    constexpr const char* names[] = {"request", "transfer",     "move",  "program", "end",
                                     "command", "notification", "fault", "tick",    "host"};
    return names[static_cast<std::size_t>(kind)];
}

std::size_t Timeline::count(Kind kind) const {
    return static_cast<std::size_t>(
        std::count_if(events.begin(), events.end(),
                      [kind](const TimelineEvent& event) { return event.kind == kind; }));
}

Timeline timelineOf(const Explanation& told) {
    if (!told.log.hasTimes) {
        throw std::runtime_error("not every line of this log has a time, so there is no timeline");
    }
    Timeline timeline;
    timeline.hasDates = told.log.hasDates;
    LaneFinder lanes;
    BarReader bars;
    for (const LogLine& line : told.log.lines) {
        const Lane lane = lanes.laneOf(line);
        bars.see(line, lane);
        if (auto mark = markOf(line, lane)) {
            timeline.events.push_back(std::move(*mark));
        }
    }
    for (TimelineEvent& bar : bars.end(told.known)) {
        timeline.events.push_back(std::move(bar));
    }
    addRunEnds(told, timeline);
    addSeen(told, timeline);
    const auto byStart = [](const TimelineEvent& a, const TimelineEvent& b) {
        return a.start < b.start;
    };
    std::stable_sort(timeline.events.begin(), timeline.events.end(), byStart);
    timeline.begin = told.log.lines.front().at.value_or(0);
    timeline.end = told.log.lines.back().at.value_or(0);
    for (const TimelineEvent& event : timeline.events) {
        timeline.begin = std::min(timeline.begin, event.start);
        timeline.end = std::max(timeline.end, event.end);
    }
    return timeline;
}

} // namespace sandbox::report
