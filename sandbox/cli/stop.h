#pragma once

#include "sandbox/common/folders.h"

namespace sandbox {

/// Asks the run's host to end and waits until it has. False when it goes on; throws
/// std::runtime_error when none runs.
bool stopHost(const Folders& folders);

} // namespace sandbox
