#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "crash/judge.h"

/// Every disturbance at every operation of a run, each on a machine of its own.
namespace crash {

struct Row {
    std::size_t at = 0;
    Disturbance disturbance = Disturbance::none;
    Step step; ///< with paths as people read them
    std::vector<Finding> findings = {};
};

/// An undisturbed machine: its first session and where it comes to in the end.
struct Baseline {
    Session first;
    std::vector<std::string> programs;
    Snapshot end;
};
Baseline undisturbed(Machine& machine);

/// One disturbance and all that follows: the host starts again and runs, the machine restarts
/// where something waits for it, the host runs again.
Row tryOne(Machine& machine, const Baseline& baseline, Disturbance disturbance, std::size_t at);

/// Every `stride`-th operation from `first` (counted from 1) with every disturbance.
std::vector<Row> sweep(Machine& machine, const Baseline& baseline, std::size_t first,
                       std::size_t stride);

/// All of them, shared out among processes. Empty when one of these has failed.
std::vector<Row> sweep(const Packet& packet, std::size_t workers);

} // namespace crash
