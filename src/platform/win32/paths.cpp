#include "platform/paths.h"

#include "platform/win32/windowsapi.h"

#include <shlwapi.h>

#include <algorithm>
#include <vector>

namespace platform {

namespace {

/// A copy that the shell's functions may work on: they assume this size at least.
std::vector<char> bufferOf(const std::string& path) {
    std::vector<char> buffer(std::max<std::size_t>(path.size() + 1, MAX_PATH));
    std::copy(path.begin(), path.end(), buffer.begin());
    return buffer;
}

} // namespace

std::string removeFileSpec(const std::string& path) {
    std::vector<char> buffer = bufferOf(path);
    ::PathRemoveFileSpecA(buffer.data());
    return buffer.data();
}

std::string appendPath(const std::string& path, const std::string& more) {
    if (path.size() >= MAX_PATH) {
        return {};
    }
    std::vector<char> buffer = bufferOf(path);
    return ::PathAppendA(buffer.data(), more.c_str()) ? std::string(buffer.data()) : std::string();
}

bool isRelativePath(const std::string& path) {
    return ::PathIsRelativeA(path.c_str()) != FALSE;
}

std::string fileNameOf(const std::string& path) {
    return ::PathFindFileNameA(path.c_str());
}

} // namespace platform
