#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

Verb addCheck(CLI::App& app);

} // namespace sandbox
