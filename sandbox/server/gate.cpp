#include "sandbox/server/gate.h"

namespace sandbox {

Gate::Ticket Gate::ticket() const {
    const std::lock_guard lock(guard);
    return Ticket(changes);
}

void Gate::pass(const Ticket& ticket) {
    std::unique_lock lock(guard);
    if (isOpen || changes != ticket.changes) {
        return;
    }
    ++waiting;
    changed.wait(lock, [&] { return changes != ticket.changes; });
}

bool Gate::isHeld() const {
    const std::lock_guard lock(guard);
    return waiting > 0;
}

void Gate::open() {
    change(true);
}

void Gate::shut() {
    change(false);
}

void Gate::change(bool toOpen) {
    const std::lock_guard lock(guard);
    if (isOpen != toOpen) {
        isOpen = toOpen;
        ++changes;
        waiting = 0;
        changed.notify_all();
    }
}

} // namespace sandbox
