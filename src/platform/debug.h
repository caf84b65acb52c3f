#pragma once

namespace platform {

/// Writes a zero-terminated text to the debug output (the debugger; stderr on posix).
void debugOutput(const char* text);

} // namespace platform
