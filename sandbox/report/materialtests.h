#pragma once

#include <map>
#include <string>

#include "sandbox/report/kelvarrun.h"
#include "sandbox/report/knowledge.h"

namespace sandbox::report {

/// What a run's tests are made on, and who tells it. An empty value is not told.
struct Grounds {
    std::string clientVersion, clientFrom;
    std::string osVersion, osFrom;
    std::map<std::string, std::string> versions; ///< comparable path to version, as known
};

/// Lays the tests of a material out in the order in which a client makes them: three filters,
/// the download, the looks at the file, the replace. The log names the test that failed; that
/// those before it passed follows from their order.
void layOutTests(Material& row, const Knowledge& known, const Grounds& grounds);

} // namespace sandbox::report
