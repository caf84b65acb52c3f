#include "platform/debug.h"

#include "platform/win32/windowsapi.h"

namespace platform {

void debugOutput(const char* text) {
    ::OutputDebugStringA(text);
}

} // namespace platform
