#pragma once

#include "sandbox/cli/verb.h"

namespace sandbox {

/// Tells what happened when, as a list and as a page with a picture.
Verb addTimeline(CLI::App& app);

} // namespace sandbox
