#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

Verb addFaults(CLI::App& app);

} // namespace sandbox
