#pragma once

#include <span>

#include "sandbox/report/explanation.h"

/// Which lines of the log, and which sights of others, belong to which run.
namespace sandbox::report {

/// Gives each run its lines and its time. A run is told with the lines of its host's process from
/// the begin on; the first with all ahead of it, the last with all behind it.
void layOutSpans(Explanation& told);

/// When host processes ended, on the log's clock, in order.
std::vector<std::int64_t> hostEnds(const Knowledge& known);

/// The observations in the time of the run.
std::span<const nlohmann::json> eventsOf(const KelvarRun& run, const Knowledge& known);

/// The faults that took effect in the time of the run. One whose time cannot be laid beside the
/// log is that of the only run, or of none that is known.
std::span<const SandboxFault> faultsOf(const KelvarRun& run, const Explanation& told);

} // namespace sandbox::report
