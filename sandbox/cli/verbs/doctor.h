#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

Verb addDoctor(CLI::App& app);

} // namespace sandbox
