#include "sandbox/report/programs.h"

#include <algorithm>

#include "sandbox/report/naming.h"
#include "sandbox/report/saying.h"

namespace sandbox::report {
namespace {

/// What stands in the next quotes behind `key`, looked for from `from` on.
std::string valueBehind(const std::string& text, const std::string& key, std::size_t from) {
    const std::size_t at = text.find(key, std::min(from, text.size()));
    const std::size_t open = at == std::string::npos ? at : text.find('"', at + key.size());
    const std::size_t close = open == std::string::npos ? open : text.find('"', open + 1);
    return close == std::string::npos ? "" : text.substr(open + 1, close - open - 1);
}

std::string lower(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    return text;
}

/// Whether another file of the group was to wait with it: then no program of the group starts.
bool waitsInPart(const Material& row, const KelvarRun& run) {
    return std::any_of(run.materials.begin(), run.materials.end(), [&](const Material& other) {
        return other.withItsGroup &&
               (&other == &row || (row.group && !row.group->empty() && other.group == row.group));
    });
}

/// Whether the file fell with a group: what it had scheduled, or could not be taken back, stays.
bool hasFallen(const Material& row, const KelvarRun& run) {
    return row.group && !row.group->empty() &&
           std::any_of(run.materials.begin(), run.materials.end(), [&](const Material& other) {
               return other.hasFailed() && other.group == row.group;
           });
}

std::string reasonOf(const Material& row, const KelvarRun& run) {
    const std::string asks = "not asked for: ";
    if (row.decision == "refused" && !row.withItsGroup) {
        return asks + row.name + " was refused, " + row.reason;
    }
    if (row.decision == "left") {
        return asks + "the run did not get to " + row.name;
    }
    if (waitsInPart(row, run)) {
        return asks + "the group of " + row.name + " waits for the restart";
    }
    if (hasFallen(row, run)) {
        return asks + "the group of " + row.name + " has failed";
    }
    return "no line tells that " + row.name + " asked for it";
}

} // namespace

std::vector<ExecEntry> execEntries(const std::string& text) {
    const std::string process = "%process%";
    std::vector<ExecEntry> entries;
    std::string rest = text;
    while (!rest.empty()) {
        const std::size_t end = rest.find(")&&(");
        const std::string item = rest.substr(0, end == std::string::npos ? end : end + 1);
        rest = end == std::string::npos ? "" : rest.substr(end + 3);
        entries.push_back(
            {lower(valueBehind(item, process, 0)), valueBehind(item, "%param%", process.size())});
    }
    return entries;
}

void addUnstarted(KelvarRun& run, const Knowledge& known) {
    for (const Material& row : run.materials) {
        const Planned* planned = plannedOf(row, run, known);
        if (planned == nullptr) {
            continue;
        }
        for (const ExecEntry& entry : execEntries(planned->exec)) {
            const auto isIt = [&](const Program& program) {
                // The log's values have lost the blanks around them.
                return program.name == trimmed(entry.program) &&
                       program.parameters == trimmed(entry.parameters);
            };
            if (std::none_of(run.programs.begin(), run.programs.end(), isIt)) {
                run.programs.push_back({entry.program, entry.parameters, 0, reasonOf(row, run)});
            }
        }
    }
}

} // namespace sandbox::report
