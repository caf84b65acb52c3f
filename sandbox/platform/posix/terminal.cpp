#include "sandbox/platform/terminal.h"

#include <cstdlib>
#include <string>
#include <sys/ioctl.h>
#include <unistd.h>

namespace sandbox {
namespace {

constexpr std::size_t usualWidth = 80;

std::string variable(const char* name) {
    const char* value = std::getenv(name);
    return value == nullptr ? "" : value;
}

/// The locale that decides about characters: the first of the three that is set.
std::string characterLocale() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        if (std::string value = variable(name); !value.empty()) {
            return value;
        }
    }
    return "";
}

std::size_t columns() {
    winsize size{};
    const bool isTold = ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0;
    return isTold ? size.ws_col : usualWidth;
}

bool hasColor(bool isTerminal, ColorWish wish) {
    if (wish != ColorWish::whereSeen) {
        return wish == ColorWish::always;
    }
    return isTerminal && variable("NO_COLOR").empty() && variable("TERM") != "dumb";
}

} // namespace

Terminal standardOutput(ColorWish wish) {
    const bool isTerminal = ::isatty(STDOUT_FILENO) == 1;
    const std::string locale = characterLocale();
    const bool utf8 =
        locale.find("UTF-8") != std::string::npos || locale.find("utf8") != std::string::npos;
    Terminal terminal;
    terminal.color = hasColor(isTerminal, wish);
    terminal.interactive = isTerminal && terminal.color && variable("TERM") != "dumb";
    terminal.unicode = isTerminal && utf8;
    terminal.width = isTerminal ? columns() : 0;
    return terminal;
}

} // namespace sandbox
