#include "updatekelvar/task/materialnames.h"

#include <algorithm>
#include <cctype>
#include <optional>
#include <vector>

#include "platform/text.h"
#include "utils/utils.h"

namespace {

using Parts = std::vector<std::string>;

/// "." and "..", and what the system takes for them or drops at a name's end.
bool isDotsAndBlanks(const std::string& name) {
    return name.find_first_not_of(". ") == std::string::npos;
}

/// Drives, streams and texts that end early for the system.
bool hasForbiddenCharacter(const std::string& text) {
    return text.find(':') != std::string::npos || text.find('\0') != std::string::npos;
}

/// Names that open a device in whatever folder, with or without an extension.
bool isDevice(const std::string& name) {
    std::string stem = utils::toLower(name.substr(0, name.find('.')));
    stem.erase(stem.find_last_not_of(' ') + 1);
    if (stem == "con" || stem == "prn" || stem == "aux" || stem == "nul" || stem == "conin$" ||
        stem == "conout$") {
        return true;
    }
    if (!stem.starts_with("com") && !stem.starts_with("lpt")) {
        return false;
    }
    const std::string number = stem.substr(3);
    return (number.size() == 1 && std::isdigit(static_cast<unsigned char>(number[0]))) ||
           number == "\u00b9" || number == "\u00b2" || number == "\u00b3"; // taken for 1, 2, 3
}

bool isUtf8(const std::string& text) {
    return platform::toUtf8(platform::toWide(text)) == text;
}

bool isAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

Parts partsOf(std::string path) {
    std::replace(path.begin(), path.end(), '/', '\\');
    Parts parts;
    utils::splitString(path, "\\", parts);
    return parts;
}

/// One part of a path as it changes the depth; nothing for one that may not stand there.
std::optional<int> stepOf(const std::string& part) {
    if (part.empty() || part == ".") {
        return 0;
    }
    if (part == "..") {
        return -1;
    }
    return isDotsAndBlanks(part) || isDevice(part) ? std::nullopt : std::optional(1);
}

/// As the system takes a name: in any case, without dots and blanks at its end.
std::string asTaken(std::string name) {
    name.erase(name.find_last_not_of(". ") + 1);
    return utils::toLower(name);
}

} // namespace

namespace materialnames {

bool isPlainName(const std::string& name) {
    return !isDotsAndBlanks(name) && !hasForbiddenCharacter(name) && !isDevice(name) &&
           name.find_first_of("\\/") == std::string::npos && isUtf8(name);
}

bool staysBelow(const std::string& path) {
    const Parts parts = partsOf(path);
    if (hasForbiddenCharacter(path) || !isUtf8(path) || parts.front().empty() ||
        isDotsAndBlanks(parts.back())) {
        return false;
    }
    // The file functions read bytes in the system's code page. In some a byte of a letter takes
    // the "\\" behind it along, so what a ".." leads to is only known of plain letters.
    const bool mayClimb = isAscii(path);
    int depth = 0;
    for (const std::string& part : parts) {
        const std::optional<int> step = stepOf(part);
        if (!step || (*step < 0 && !mayClimb)) {
            return false;
        }
        depth += *step;
        if (depth < 0) {
            return false;
        }
    }
    return true; // the last part is a name
}

bool isSameFile(const std::string& path, const std::string& name) {
    Parts walked;
    for (const std::string& part : partsOf(path)) {
        if (part == "..") {
            walked.pop_back(); // it stays below: there is one
        } else if (!part.empty() && part != ".") {
            walked.push_back(asTaken(part));
        }
    }
    return walked == Parts{asTaken(name)};
}

} // namespace materialnames
