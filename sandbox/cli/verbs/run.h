#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

Verb addRun(CLI::App& app);

} // namespace sandbox
