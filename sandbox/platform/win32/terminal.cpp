#include "sandbox/platform/terminal.h"

#include <windows.h>

namespace sandbox {

Terminal standardOutput(ColorWish wish) {
    const HANDLE output = GetStdHandle(STD_OUTPUT_HANDLE);
    Terminal terminal;
    terminal.color = wish == ColorWish::always;
    CONSOLE_SCREEN_BUFFER_INFO screen{};
    if (GetConsoleScreenBufferInfo(output, &screen) == 0) {
        return terminal;
    }
    DWORD mode = 0;
    const bool obeys = GetConsoleMode(output, &mode) != 0 &&
                       SetConsoleMode(output, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
    const bool isRefused = GetEnvironmentVariableA("NO_COLOR", nullptr, 0) > 1;
    terminal.color = terminal.color || (obeys && wish == ColorWish::whereSeen && !isRefused);
    terminal.interactive = obeys && terminal.color;
    terminal.unicode = GetConsoleOutputCP() == CP_UTF8;
    terminal.width = static_cast<std::size_t>(screen.dwSize.X);
    return terminal;
}

} // namespace sandbox
