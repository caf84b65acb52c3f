#include "platform/lasterror.h"

namespace platform {

namespace {
thread_local std::uint32_t threadError = errorNone;
}

std::uint32_t lastError() {
    return threadError;
}

void setLastError(std::uint32_t error) {
    threadError = error;
}

} // namespace platform
