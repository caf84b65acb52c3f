#include "sandbox/platform/keyboard.h"

#include <poll.h>
#include <termios.h>
#include <unistd.h>

namespace sandbox {

struct Keyboard::Settings {
    termios terminal;
};

Keyboard::Keyboard() {
    termios terminal = {};
    if (::tcgetattr(STDIN_FILENO, &terminal) != 0) {
        return;
    }
    before = std::make_unique<Settings>(Settings{terminal});
    terminal.c_lflag &= ~static_cast<tcflag_t>(ICANON | ECHO); // Ctrl+C stays a signal
    ::tcsetattr(STDIN_FILENO, TCSANOW, &terminal);
}

Keyboard::~Keyboard() {
    if (before) {
        ::tcsetattr(STDIN_FILENO, TCSANOW, &before->terminal);
    }
}

std::optional<char> Keyboard::next(std::chrono::milliseconds limit) {
    pollfd input{STDIN_FILENO, POLLIN, 0};
    if (::poll(&input, 1, static_cast<int>(limit.count())) <= 0) {
        return std::nullopt;
    }
    char key = endOfKeys;
    return ::read(STDIN_FILENO, &key, 1) == 1 ? key : endOfKeys;
}

} // namespace sandbox
