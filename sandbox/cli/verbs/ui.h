#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

Verb addUi(CLI::App& app);

} // namespace sandbox
