#pragma once

#include "sandbox/report/filtertests.h"
#include "sandbox/report/kelvarrun.h"
#include "sandbox/report/knowledge.h"
#include "sandbox/report/standing.h"

namespace sandbox::report {

/// Lays the tests of the run's materials out in the order in which a client makes them: three
/// filters, the download, the looks at the file, the replace. The log names the test that failed;
/// that those before it passed follows from their order. `standing` is ahead of the run.
void layOutTests(KelvarRun& run, const Knowledge& known, const Grounds& grounds,
                 const Standing& standing);

} // namespace sandbox::report
