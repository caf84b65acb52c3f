#include "platform/debug.h"

#include <cerrno>
#include <string>
#include <unistd.h>

namespace platform {

void debugOutput(const char* text) {
    std::string line(text);
    if (!line.ends_with('\n')) {
        line += '\n';
    }
    // One call a line, so that lines of two threads do not mix.
    while (::write(STDERR_FILENO, line.data(), line.size()) < 0 && errno == EINTR) {
    }
}

} // namespace platform
