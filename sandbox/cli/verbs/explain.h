#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

/// Tells what a log says of each material and each channel, and on what it was decided.
Verb addExplain(CLI::App& app);

} // namespace sandbox
