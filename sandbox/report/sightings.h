#pragma once

#include <optional>

#include "sandbox/report/explanation.h"

/// What the sandbox saw beside the log, laid beside a run of it by the time.
namespace sandbox::report {

/// The first line of the host process of the run, if that began behind the run before.
std::optional<std::size_t> beginOfSitting(const KelvarRun& run, const Explanation& told);

/// The faults that took effect in the run: with what they met, and all in the run's list.
void addFaults(KelvarRun& run, const Explanation& told);

/// Whether programs started, and what was written to the version store. Where nobody saw it,
/// says so.
void addSightings(KelvarRun& run, const Explanation& told);

} // namespace sandbox::report
