#pragma once

#include <vector>

#include "crash/sweep.h"

namespace crash {

/// The user's cancel ahead of every operation of the package channel: of a tick's chain, and of a
/// download that the user has asked for. A session without a cancel follows each.
std::vector<Row> cancelSweep();

} // namespace crash
