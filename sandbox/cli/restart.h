#pragma once

#include "sandbox/cli/clientsystem.h"
#include "sandbox/cli/console.h"

namespace sandbox {

/// Restarts the client's machine: ends the programs that keep files in use, and the system
/// carries out the delayed moves. Says what happened; whether every move did.
bool restartMachine(ClientSystem& system, Console& console);

} // namespace sandbox
