#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

Verb addNew(CLI::App& app);

} // namespace sandbox
