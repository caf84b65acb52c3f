#include "sandbox/platform/terminal.h"

#include <windows.h>

namespace sandbox {

Terminal standardOutput() {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    if (GetConsoleMode(output, &mode) == 0 ||
        SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) == 0) {
        return {};
    }
    return {true, GetConsoleOutputCP() == CP_UTF8};
}

} // namespace sandbox
