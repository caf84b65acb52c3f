#include "platform/clock.h"

#include "platform/win32/windowsapi.h"

#include <chrono>
#include <ctime>

namespace platform {

std::uint32_t tickCount() {
    return ::GetTickCount();
}

void sleepFor(std::uint32_t milliseconds) {
    ::Sleep(milliseconds);
}

bool waitFor(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
             std::uint32_t milliseconds, const std::function<bool()>& ready) {
    return condition.wait_for(lock, std::chrono::milliseconds(milliseconds), ready);
}

std::int64_t wallClock() {
    return static_cast<std::int64_t>(std::time(nullptr));
}

} // namespace platform
