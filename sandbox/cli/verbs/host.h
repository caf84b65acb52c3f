#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

Verb addHost(CLI::App& app);

} // namespace sandbox
