#include "platform/debug.h"

#include <array>
#include <cerrno>
#include <cstring>
#include <string>
#include <unistd.h>

namespace platform {

namespace {

constexpr std::size_t usualLine = 1024;

/// One call a line, so that lines of two threads do not mix.
void writeLine(const char* line, std::size_t size) {
    while (::write(STDERR_FILENO, line, size) < 0 && errno == EINTR) {
    }
}

} // namespace

void debugOutput(const char* text) {
    const std::size_t size = std::strlen(text);
    if (size > 0 && text[size - 1] == '\n') {
        writeLine(text, size);
    } else if (size < usualLine) {
        std::array<char, usualLine> line;
        std::memcpy(line.data(), text, size);
        line[size] = '\n';
        writeLine(line.data(), size + 1);
    } else {
        writeLine((std::string(text, size) + '\n').c_str(), size + 1);
    }
}

} // namespace platform
