#pragma once

#include "sandbox/cli/clientsystem.h"
#include "sandbox/cli/console.h"

namespace sandbox {

/// Shows what stands in the folder of a run: files with versions, the stores,
/// filelist.xml (the entries that changed, or all), what waits for a restart, started
/// programs, notifications.
void showRun(const ClientSystem& system, bool allEntries, Console& console);

} // namespace sandbox
