#pragma once

namespace sandbox {

/// From now on a request to end (SIGTERM, SIGINT; Ctrl+C on Windows) no longer ends the
/// process but is remembered. Called once, at the start of main.
void watchStopSignals();

/// Whether such a request has come. Any thread.
bool stopSignalled();

} // namespace sandbox
