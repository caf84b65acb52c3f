#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

Verb addRestart(CLI::App& app);

} // namespace sandbox
