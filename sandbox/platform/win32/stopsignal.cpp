#include "sandbox/platform/stopsignal.h"

#include <atomic>
#include <windows.h>

namespace sandbox {

namespace {

std::atomic<bool> signalled{false};

BOOL WINAPI remember(DWORD /*event*/) {
    signalled = true;
    return TRUE;
}

} // namespace

void watchStopSignals() {
    SetConsoleCtrlHandler(remember, TRUE);
}

bool stopSignalled() {
    return signalled;
}

} // namespace sandbox
