#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

Verb addSet(CLI::App& app);

} // namespace sandbox
