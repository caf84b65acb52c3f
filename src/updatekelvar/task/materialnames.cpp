#include "updatekelvar/task/materialnames.h"

#include <algorithm>
#include <vector>

#include "platform/text.h"
#include "utils/utils.h"

namespace {

/// "." and "..", and what the system takes for them or drops at a name's end.
bool isDotsAndBlanks(const std::string& name) {
    return name.find_first_not_of(". ") == std::string::npos;
}

/// Drives, streams and texts that end early for the system.
bool hasForbiddenCharacter(const std::string& text) {
    return text.find(':') != std::string::npos || text.find('\0') != std::string::npos;
}

bool isUtf8(const std::string& text) {
    return platform::toUtf8(platform::toWide(text)) == text;
}

} // namespace

namespace materialnames {

bool isPlainName(const std::string& name) {
    return !isDotsAndBlanks(name) && !hasForbiddenCharacter(name) &&
           name.find_first_of("\\/") == std::string::npos && isUtf8(name);
}

bool staysBelow(const std::string& path) {
    std::string separated = path;
    std::replace(separated.begin(), separated.end(), '/', '\\');
    if (hasForbiddenCharacter(separated) || separated.starts_with('\\')) {
        return false;
    }
    std::vector<std::string> parts;
    utils::splitString(separated, "\\", parts);
    int depth = 0;
    for (const std::string& part : parts) {
        if (part == "..") {
            --depth;
        } else if (!isDotsAndBlanks(part)) {
            ++depth;
        } else if (!part.empty() && part != ".") {
            return false;
        }
        if (depth < 0) {
            return false;
        }
    }
    return depth > 0 && !isDotsAndBlanks(parts.back());
}

} // namespace materialnames
