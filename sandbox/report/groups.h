#pragma once

#include "sandbox/report/kelvarrun.h"

namespace sandbox::report {

/// Concludes which files were taken back with their group. The log names no group: the limits
/// between groups are those of the scenario, else what the order of the moves and the number of
/// groups leave no choice about. What stays open is marked as untold.
void settleGroups(KelvarRun& run);

} // namespace sandbox::report
