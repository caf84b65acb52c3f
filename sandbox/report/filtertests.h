#pragma once

#include <string>

#include "sandbox/report/kelvarrun.h"
#include "sandbox/report/knowledge.h"
#include "sandbox/report/standing.h"

namespace sandbox::report {

/// What a run's filters compare with, and who tells it. An empty value is not told.
struct Grounds {
    std::string clientVersion, clientFrom;
    std::string osVersion, osFrom;
};

/// Adds the tests of the three filters: client version, system version, file on disk. A value
/// that would have given another verdict than the log's was another one at that time, and is not
/// told. `planned` may be null.
void addFilterTests(Material& row, const Planned* planned, const Grounds& grounds,
                    const Standing::Found& onDisk);

} // namespace sandbox::report
