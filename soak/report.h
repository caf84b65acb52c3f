#pragma once

#include <ostream>

#include "soak/soak.h"

namespace soak {

/// Prints what came of the soak; whether nothing has grown and the host has ended in order.
bool report(const Findings& findings, std::ostream& out);

} // namespace soak
