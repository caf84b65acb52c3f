#pragma once

#include "sandbox/cli/scenario.h"

namespace sandbox {

/// Throws std::runtime_error when a program that is to keep a file in use, from the start or by a
/// fault, is none of kind holder, or the file is one that nothing brings.
void checkHoldings(const Scenario& scenario);

} // namespace sandbox
