#include "sandbox/server/gate.h"

namespace sandbox {

void Gate::pass() {
    std::unique_lock lock(guard);
    ++waiting;
    opened.wait(lock, [this] { return isOpen; });
    --waiting;
}

bool Gate::isHeld() const {
    const std::lock_guard lock(guard);
    return waiting > 0 && !isOpen;
}

void Gate::open() {
    const std::lock_guard lock(guard);
    isOpen = true;
    opened.notify_all();
}

void Gate::shut() {
    const std::lock_guard lock(guard);
    isOpen = false;
}

} // namespace sandbox
