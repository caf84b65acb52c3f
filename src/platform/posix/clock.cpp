#include "platform/clock.h"

#include <chrono>
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

} // namespace platform
