#include "platform/process.h"

#include "platform/debug.h"
#include "platform/files.h"

#include <algorithm>
#include <sys/types.h>
#include <unistd.h>

namespace platform {

namespace {

std::string readExecutablePath() {
    char target[maxPath];
    const ssize_t length = ::readlink("/proc/self/exe", target, sizeof target);
    if (length <= 0 || length >= static_cast<ssize_t>(maxPath)) {
        return {};
    }
    std::string path(target, static_cast<std::size_t>(length));
    std::replace(path.begin(), path.end(), '/', '\\');
    return path;
}

/// The link follows the file when an update moves it aside, so the name counts that it had
/// when this module was loaded.
const std::string& pathAtLoad() {
    static const std::string path = readExecutablePath();
    return path;
}

[[maybe_unused]] const bool captured = !pathAtLoad().empty();

} // namespace

std::string executablePath() {
    return pathAtLoad();
}

void endProcess(const std::string& title, const std::string& text, int exitCode) {
    debugOutput((title + ": " + text).c_str());
    ::_exit(exitCode);
}

} // namespace platform
