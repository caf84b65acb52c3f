#include "sandbox/platform/stopsignal.h"

#include <atomic>
#include <csignal>

namespace sandbox {

namespace {

std::atomic<bool> signalled{false};
static_assert(std::atomic<bool>::is_always_lock_free, "set by a signal handler");

} // namespace

void watchStopSignals() {
    struct sigaction action = {};
    action.sa_handler = [](int) {
        signalled = true;
    };
    sigemptyset(&action.sa_mask);
    action.sa_flags = SA_RESTART;
    ::sigaction(SIGTERM, &action, nullptr);
    ::sigaction(SIGINT, &action, nullptr);
}

bool stopSignalled() {
    return signalled;
}

} // namespace sandbox
