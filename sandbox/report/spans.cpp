#include "sandbox/report/spans.h"

#include <algorithm>
#include <limits>

#include "sandbox/report/plannedmaterials.h"

namespace sandbox::report {
namespace {

using Json = nlohmann::json;
using Lines = std::vector<LogLine>;

Lines::const_iterator lineFrom(const Log& log, std::size_t number) {
    return std::lower_bound(
        log.lines.begin(), log.lines.end(), number,
        [](const LogLine& line, std::size_t wanted) { return line.number < wanted; });
}

/// The first line of the host process of the run, if that began behind the run before; else its
/// own first one.
std::size_t beginOfSitting(const KelvarRun& before, const KelvarRun& run, const Log& log,
                           const std::vector<std::int64_t>& ends) {
    if (!before.begin || !run.begin) {
        return run.firstLine;
    }
    const auto end = std::lower_bound(ends.begin(), ends.end(), *before.begin);
    if (end == ends.end() || *end > *run.begin) {
        return run.firstLine;
    }
    const auto own = lineFrom(log, run.firstLine);
    const auto first =
        std::find_if(lineFrom(log, before.lastLine + 1), own,
                     [&](const LogLine& line) { return line.at && *line.at > *end; });
    return first == own ? run.firstLine : first->number;
}

std::optional<std::int64_t> timeOfLine(const Log& log, std::size_t number) {
    const auto found = std::find_if(lineFrom(log, number), log.lines.end(),
                                    [](const LogLine& line) { return line.at.has_value(); });
    return found == log.lines.end() ? std::nullopt : found->at;
}

/// Those in the time of the run, of items that stand by their time, the ones without it first.
template <class Item, class TimeOf>
std::span<const Item> inTimeOf(const KelvarRun& run, const std::vector<Item>& items,
                               std::int64_t offset, TimeOf timeOf) {
    const auto from = [&](std::int64_t time) {
        return std::partition_point(items.begin(), items.end(), [&](const Item& item) {
            const std::optional<std::int64_t> at = timeOf(item);
            return !at || *at - offset < time;
        });
    };
    const auto first = from(run.seenFrom);
    return {first, std::max(first, from(run.seenTo))};
}

} // namespace

std::vector<std::int64_t> hostEnds(const Knowledge& known) {
    std::vector<std::int64_t> ends;
    for (const Json& event : known.events) {
        const auto at = known.onLogClock(event["at"].get<std::int64_t>());
        if (at && textOf(event, "kind") == "host" && textOf(event, "what") == "stop") {
            ends.push_back(*at);
        }
    }
    return ends;
}

void layOutSpans(Explanation& told) {
    const std::vector<std::int64_t> ends = hostEnds(told.known);
    KelvarRun* before = nullptr;
    for (KelvarRun& run : told.runs) {
        run.toldTo = std::numeric_limits<std::size_t>::max();
        run.seenFrom = std::numeric_limits<std::int64_t>::min();
        run.seenTo = std::numeric_limits<std::int64_t>::max();
        if (before != nullptr) {
            run.toldFrom = beginOfSitting(*before, run, told.log, ends);
            run.seenFrom = timeOfLine(told.log, run.toldFrom).value_or(run.seenFrom);
            before->toldTo = run.toldFrom;
            before->seenTo = run.seenFrom;
        }
        before = &run;
    }
}

std::span<const Json> eventsOf(const KelvarRun& run, const Knowledge& known) {
    const auto timeOf = [](const Json& event) {
        return std::optional(event["at"].get<std::int64_t>());
    };
    return known.clockOffset ? inTimeOf(run, known.events, *known.clockOffset, timeOf)
                             : std::span<const Json>();
}

std::span<const SandboxFault> faultsOf(const KelvarRun& run, const Explanation& told) {
    const Knowledge& known = told.known;
    if (told.runs.size() == 1) {
        return known.faults;
    }
    const auto timeOf = [](const SandboxFault& fault) {
        return fault.at;
    };
    return known.clockOffset ? inTimeOf(run, known.faults, *known.clockOffset, timeOf)
                             : std::span<const SandboxFault>();
}

} // namespace sandbox::report
