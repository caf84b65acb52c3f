#include "sandbox/check/targetpath.h"

#include <algorithm>
#include <array>
#include <vector>

#include "sandbox/common/clientpath.h"

namespace sandbox::check {
namespace {

constexpr std::array<const char*, 6> devices{"con", "prn", "aux", "nul", "conin$", "conout$"};

std::vector<std::string> split(const std::string& path) {
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= path.size();) {
        const std::size_t end = std::min(path.find_first_of("\\/", begin), path.size());
        parts.push_back(path.substr(begin, end - begin));
        begin = end + 1;
    }
    return parts;
}

bool isDotsAndBlanks(const std::string& name) {
    return name.find_first_not_of(". ") == std::string::npos;
}

bool isDevice(const std::string& name) {
    std::string stem = comparablePath(name.substr(0, name.find('.')));
    stem.erase(stem.find_last_not_of(' ') + 1);
    const bool isPort = stem.size() == 4 && stem[3] >= '0' && stem[3] <= '9' &&
                        (stem.rfind("com", 0) == 0 || stem.rfind("lpt", 0) == 0);
    return isPort || std::find(devices.begin(), devices.end(), stem) != devices.end();
}

std::string commonRefusal(const std::string& text) {
    if (text.find('\0') != std::string::npos) {
        return "it holds a zero byte";
    }
    return text.find(':') != std::string::npos ? "it holds a colon: a drive or a stream" : "";
}

/// Why that part may not stand in a path; `depth` follows it.
std::string walk(const std::string& part, bool mayClimb, int& depth) {
    if (part.empty() || part == ".") {
        return "";
    }
    if (part == "..") {
        --depth;
        return !mayClimb   ? "it holds \"..\" beside letters beyond ASCII"
               : depth < 0 ? "it leaves the client's folder"
                           : "";
    }
    ++depth;
    if (isDotsAndBlanks(part)) {
        return "a name is made of dots and blanks";
    }
    return isDevice(part) ? "\"" + part + "\" is a device of the system" : "";
}

} // namespace

bool isAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(),
                       [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

std::string refusalOf(const std::string& path) {
    const std::vector<std::string> parts = split(path);
    if (path.empty()) {
        return "it is empty: the client's folder itself";
    }
    if (std::string why = commonRefusal(path); !why.empty()) {
        return why;
    }
    if (parts.front().empty()) {
        return "it begins at a root";
    }
    if (isDotsAndBlanks(parts.back())) {
        return "it ends without a name";
    }
    int depth = 0;
    for (const std::string& part : parts) {
        if (std::string why = walk(part, isAscii(path), depth); !why.empty()) {
            return why;
        }
    }
    return depth > 0 ? "" : "it is the client's folder itself";
}

std::string nameRefusalOf(const std::string& name) {
    if (isDotsAndBlanks(name)) {
        return "it is no name";
    }
    if (name.find_first_of("\\/") != std::string::npos) {
        return "it holds a separator";
    }
    const std::string why = commonRefusal(name);
    return !why.empty() ? why : isDevice(name) ? "it is a device of the system" : "";
}

std::string targetKey(const std::string& path) {
    std::vector<std::string> walked;
    for (std::string part : split(comparablePath(path))) {
        if (part == ".." && !walked.empty()) {
            walked.pop_back();
        } else if (part != "." && part != ".." && !part.empty()) {
            part.erase(part.find_last_not_of(". ") + 1); // the system drops them
            walked.push_back(part);
        }
    }
    std::string key;
    for (const std::string& part : walked) {
        key += (key.empty() ? "" : "\\") + part;
    }
    return key;
}

} // namespace sandbox::check
