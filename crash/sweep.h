#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "crash/judge.h"

/// Every disturbance at every operation of a run, each on a machine of its own.
namespace crash {

struct Row {
    std::size_t at = 0;
    Disturbance disturbance = Disturbance::none;
    Step step; ///< with paths as people read them; none where look-ups are counted
    std::vector<Finding> findings = {};
    std::optional<std::size_t> runs = {}; ///< until every target was as it should be
};

/// An undisturbed machine: its first session and where it comes to in the end.
struct Baseline {
    Session first;
    std::vector<std::string> programs;
    Snapshot end;
    std::vector<Finding> findings; ///< what is wrong with it; then nothing may be compared with it
};
Baseline undisturbed(Machine& machine);

/// What is wrong where an undisturbed machine has come to its end: targets, entries, versions and
/// programs that are not as the packet has them, but for a refused group.
std::vector<Finding> judgeUndisturbed(const Packet& packet, const Baseline& baseline);

/// One disturbance and all that follows: the host starts again and runs, the machine restarts
/// where something waits for it, the host runs again.
Row tryOne(Machine& machine, const Baseline& baseline, Disturbance disturbance, std::size_t at);

/// Every `stride`-th operation from `first` (counted from 1) with every disturbance.
std::vector<Row> sweep(Machine& machine, const Baseline& baseline, std::size_t first,
                       std::size_t stride);

/// All of them, shared out among processes. Throws when one of these has failed, and as rowsOf.
std::vector<Row> sweep(const Packet& packet, std::size_t workers);

/// The rows in what the processes of a sweep have written: one text each, a line of JSON with the
/// numbers of steps and of look-ups and what is wrong with the undisturbed machine, then a line a
/// row. Throws when something is, when two are not of the same machine, and when a row is missing.
std::vector<Row> rowsOf(const std::vector<std::string>& texts);

} // namespace crash
