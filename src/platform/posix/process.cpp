#include "platform/process.h"

#include "platform/debug.h"
#include "platform/files.h"
#include "platform/paths.h"
#include "platform/text.h"

#include <algorithm>
#include <cstdlib>
#include <sys/types.h>
#include <unistd.h>

namespace platform {

namespace {

/// Text without a destructor: threads of a module outlive its static objects.
struct PathAtLoad {
    PathAtLoad() {
        const ssize_t length = ::readlink("/proc/self/exe", text, sizeof text);
        if (length <= 0 || length >= static_cast<ssize_t>(sizeof text)) {
            text[0] = '\0';
            return;
        }
        text[length] = '\0';
        std::replace(text, text + length, '/', '\\');
    }

    char text[maxPath];
};

/// The link follows the file when an update moves it aside, so the name counts that it had
/// when this module was loaded.
const PathAtLoad pathAtLoad;

} // namespace

std::string executablePath() {
    return pathAtLoad.text;
}

std::string executableName() {
    return toUtf8(toWide(fileNameOf(pathAtLoad.text)));
}

void endProcess(const std::string& title, const std::string& text, int exitCode) {
    debugOutput((title + ": " + text).c_str());
    ::_exit(exitCode);
}

void abortProcess() {
    std::abort();
}

} // namespace platform
