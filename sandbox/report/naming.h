#pragma once

#include "sandbox/report/kelvarrun.h"
#include "sandbox/report/knowledge.h"

namespace sandbox::report {

/// Joins the run's materials, of which the log has hashes, with those that it asked about, of
/// which it has names: by the sandbox's file names, else by their order where that leaves no
/// choice. Materials that the run did not come to are added behind the others.
void nameMaterials(KelvarRun& run, const Knowledge& known);

/// What the scenario tells of it. Null where that is not what the client was told: a fault gave
/// it other rows, or the log has it go to another target.
const Planned* plannedOf(const Material& row, const KelvarRun& run, const Knowledge& known);

} // namespace sandbox::report
