#pragma once

#include "sandbox/cli/console.h"
#include "sandbox/common/folders.h"

namespace sandbox {

/// Does to a client's folder what a restart of the machine does: ends the programs that
/// keep files in use and carries out the delayed moves. Says what it did; whether every
/// move could be carried out.
bool restartMachine(const Folders& folders, Console& console);

} // namespace sandbox
