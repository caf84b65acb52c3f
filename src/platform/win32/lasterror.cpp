#include "platform/lasterror.h"

#include "platform/win32/windowsapi.h"

namespace platform {

std::uint32_t lastError() {
    return ::GetLastError();
}

void setLastError(std::uint32_t error) {
    ::SetLastError(error);
}

} // namespace platform
