#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

Verb addStop(CLI::App& app);

} // namespace sandbox
