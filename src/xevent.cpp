#include "xevent.h"

#include <utility>

#include "platform/clock.h"

void Event::set() {
    MutexLock lock(mutex);
    signalled = true;
    condition.notify_all();
}

void Event::wait() {
    MutexLock lock(mutex);
    while (!signalled) {
        condition.wait(lock.native());
    }
    signalled = reset == Reset::manual;
}

bool Event::wait(std::uint32_t milliseconds) {
    MutexLock lock(mutex);
    const bool ended = platform::waitFor(condition, lock.native(), milliseconds,
                                         [this]() XR_REQUIRES(mutex) { return signalled; });
    signalled = signalled && reset == Reset::manual;
    return ended;
}

std::shared_ptr<Event> EventSlot::get() {
    MutexLock lock(mutex);
    return event;
}

std::shared_ptr<Event> EventSlot::exchange(std::shared_ptr<Event> other) {
    MutexLock lock(mutex);
    return std::exchange(event, std::move(other));
}
