#pragma once

#include <ostream>

#include "soak/findings.h"

namespace soak {

/// What the soak has shown; the values are exit statuses.
enum class Outcome {
    sound = 0,  ///< the host was kept busy, nothing has grown, and it has ended in order
    faulty = 1, ///< one of these is not so
    untold = 2, ///< it was broken off, or was too short to show it
};

/// Prints what came of the soak.
Outcome report(const Findings& findings, std::ostream& out);

} // namespace soak
