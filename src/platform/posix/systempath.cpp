#include "platform/posix/systempath.h"

#include "platform/files.h"
#include "platform/paths.h"
#include "platform/posix/foldernames.h"
#include "platform/process.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::posix {

namespace {

std::string parentOf(const std::string& systemPath) {
    const std::size_t end = systemPath.find_last_not_of('/');
    if (end == std::string::npos) {
        return "/";
    }
    const std::size_t separator = systemPath.rfind('/', end);
    return separator == std::string::npos ? "." : systemPath.substr(0, separator + 1);
}

/// Windows tells a missing file from a missing folder on the way to it.
Error missingError(const std::string& systemPath) {
    return !systemPath.empty() && isThere(parentOf(systemPath)) ? errorFileNotFound
                                                                : errorPathNotFound;
}

} // namespace

bool isThere(const std::string& systemPath) {
    struct stat status {};
    return ::lstat(systemPath.c_str(), &status) == 0;
}

std::string spelledPath(const std::string& path) {
    // The client's system ends a path at its first zero byte.
    std::string spelled = path.substr(0, path.find('\0'));
    std::replace(spelled.begin(), spelled.end(), '\\', '/');
    return spelled;
}

std::string resolvePath(const std::string& path) {
    const std::string spelled = spelledPath(path);
    return isThere(spelled) ? spelled : resolveMissing(spelled);
}

std::string resolveMissing(const std::string& wanted) {
    // Mostly only the name itself is not there, or not in that spelling.
    const std::size_t nameStart = wanted.rfind('/') + 1;
    const std::string folder = wanted.substr(0, nameStart);
    const std::string last = wanted.substr(nameStart);
    if (const auto found = findIgnoringCase(folder, last)) {
        return folder + found->value_or(last);
    }
    std::string resolved;
    for (std::size_t at = 0; at < wanted.size();) {
        if (wanted[at] == '/') {
            resolved += wanted[at++];
            continue;
        }
        const std::size_t end = std::min(wanted.find('/', at), wanted.size());
        const std::string name = wanted.substr(at, end - at);
        if (!isThere(resolved + name)) {
            const auto found = findIgnoringCase(resolved, name);
            if (!found || !*found) {
                return resolved + wanted.substr(at);
            }
            resolved += **found;
        } else {
            resolved += name;
        }
        at = end;
    }
    return resolved;
}

bool isPathLength(const std::string& path) {
    return path.size() < maxPath || fail(errorFilenameTooLong);
}

std::optional<std::string> mapPath(const std::string& path) {
    return isPathLength(path) ? std::optional(resolvePath(path)) : std::nullopt;
}

bool statusOf(const std::string& path, struct stat& status) {
    return callWithPath(path,
                        [&](const char* way) { return ::stat(way, &status) == 0 ? 0 : errno; });
}

std::string absoluteClientPath(const std::string& path) {
    std::string whole = path.substr(0, path.find('\0'));
    if (whole.empty() || (whole[0] != '\\' && whole[0] != '/')) {
        std::unique_ptr<char, void (*)(void*)> current(::getcwd(nullptr, 0), std::free);
        whole = std::string(current ? current.get() : "") + '\\' + whole;
    }
    std::replace(whole.begin(), whole.end(), '/', '\\');
    whole.erase(std::unique(whole.begin(), whole.end(),
                            [](char a, char b) { return a == '\\' && b == '\\'; }),
                whole.end());
    return whole;
}

std::string hostFolder() {
    return removeFileSpec(executablePath());
}

Error errorOf(int number, const std::string& systemPath) {
    switch (number) {
    case ENOENT:
        return missingError(systemPath);
    case ENOTDIR:
    case ELOOP:
        return errorPathNotFound;
    case EXDEV:
        return errorNotSameDevice;
    case EIO:
        return errorWriteFault;
    case EBUSY:
    case ETXTBSY:
    case EWOULDBLOCK:
        return errorSharingViolation;
    case EINVAL:
        return errorInvalidParameter;
    case ENOSPC:
    case EDQUOT:
        return errorDiskFull;
    case ENOTEMPTY:
        return errorDirNotEmpty;
    case EEXIST:
        return errorAlreadyExists;
    case ENAMETOOLONG:
        return errorFilenameTooLong;
    default:
        return errorAccessDenied;
    }
}

bool failFromErrno(const std::string& systemPath) {
    return fail(errorOf(errno, systemPath));
}

bool fail(Error error) {
    setLastError(error);
    return false;
}

} // namespace platform::posix
