#include "platform/clock.h"

#include <chrono>
#include <ctime>

// What the standard library has for every system.

namespace platform {

bool waitFor(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
             std::uint32_t milliseconds, const std::function<bool()>& ready) {
    return condition.wait_for(lock, std::chrono::milliseconds(milliseconds), ready);
}

std::int64_t wallClock() {
    return static_cast<std::int64_t>(std::time(nullptr));
}

} // namespace platform
