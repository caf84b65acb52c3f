#pragma once

#include "sandbox/report/kelvarrun.h"

namespace sandbox::report {

/// Concludes how each material of the run ended, in the words of the scenarios: placed, waiting,
/// refused or left, and "untold" where the log leaves it open; and how the run ended as a whole.
void decide(KelvarRun& run);

} // namespace sandbox::report
