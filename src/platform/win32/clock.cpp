#include "platform/clock.h"

#include "platform/win32/windowsapi.h"

namespace platform {

std::uint32_t tickCount() {
    return ::GetTickCount();
}

void sleepFor(std::uint32_t milliseconds) {
    ::Sleep(milliseconds);
}

} // namespace platform
