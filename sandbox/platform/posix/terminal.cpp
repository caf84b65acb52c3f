#include "sandbox/platform/terminal.h"

#include <cstdlib>
#include <string>
#include <unistd.h>

namespace sandbox {
namespace {

/// The locale that decides about characters: the first of the three that is set.
std::string characterLocale() {
    for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
        const char* value = std::getenv(name);
        if (value != nullptr && *value != '\0') {
            return value;
        }
    }
    return "";
}

} // namespace

Terminal standardOutput() {
    const bool interactive = ::isatty(STDOUT_FILENO) == 1;
    const std::string locale = characterLocale();
    const bool utf8 =
        locale.find("UTF-8") != std::string::npos || locale.find("utf8") != std::string::npos;
    return {interactive, interactive && utf8};
}

} // namespace sandbox
