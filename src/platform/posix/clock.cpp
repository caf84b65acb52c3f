#include "platform/clock.h"

#include <chrono>
#include <ctime>
#include <thread>

namespace platform {

std::uint32_t tickCount() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return static_cast<std::uint32_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(sinceStart).count());
}

void sleepFor(std::uint32_t milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
}

bool waitFor(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
             std::uint32_t milliseconds, const std::function<bool()>& ready) {
    return condition.wait_for(lock, std::chrono::milliseconds(milliseconds), ready);
}

std::int64_t wallClock() {
    return static_cast<std::int64_t>(std::time(nullptr));
}

} // namespace platform
