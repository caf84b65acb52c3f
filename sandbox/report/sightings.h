#pragma once

#include "sandbox/report/explanation.h"

/// What the sandbox saw beside the log, laid beside a run of it by the time.
namespace sandbox::report {

/// The faults that took effect in the run: all in its list, and with the questions that met them.
void addFaults(KelvarRun& run, const Explanation& told);

/// The faults of the run with the materials that met them, once these have their names.
void addMaterialFaults(KelvarRun& run, const Explanation& told);

/// Whether programs started, and what was written to the version store. Where nobody saw it,
/// says so.
void addSightings(KelvarRun& run, const Explanation& told);

} // namespace sandbox::report
