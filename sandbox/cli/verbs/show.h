#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

Verb addShow(CLI::App& app);

} // namespace sandbox
