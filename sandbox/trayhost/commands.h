#pragma once

#include <string>

#include "sandbox/trayhost/exitstatus.h"
#include "sandbox/trayhost/host.h"

/// What the command line asks for, one function each. All of them expect the client's
/// modules to be loaded and run on main's thread; the status is the process' own.

/// Creates the plug-in and drives it by ticks.
ExitStatus drivePlugin(Host& host);

/// Starts the channel's own service loop and waits.
ExitStatus driveService(Host& host);

ExitStatus printVersion();
ExitStatus storeVersion(const std::string& version);
