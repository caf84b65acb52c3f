#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>

#include "utils/mutex.h"

/// An event that threads wait on. Held by shared_ptr so that whoever signals late still
/// finds it. Any thread.
class Event {
public:
    enum class Reset { manual, automatic };

    explicit Event(Reset mode) : reset(mode) {}

    /// Signals. A manual event stays signalled; an automatic one lets one wait through.
    void set();

    /// Blocks until signalled.
    void wait();

    /// Blocks until signalled or until the time is up; whether it was signalled.
    bool wait(std::uint32_t milliseconds);

private:
    const Reset reset;
    Mutex mutex;
    std::condition_variable condition;
    bool signalled XR_GUARDED_BY(mutex) = false;
};

/// A place for an event that threads read and replace while others wait on what stood
/// there. Empty at first. Any thread.
class EventSlot {
public:
    std::shared_ptr<Event> get();

    /// Puts `event` there and gives what stood there before.
    std::shared_ptr<Event> exchange(std::shared_ptr<Event> event);

private:
    Mutex mutex;
    std::shared_ptr<Event> event XR_GUARDED_BY(mutex);
};
