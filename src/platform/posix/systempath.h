#pragma once

#include "platform/lasterror.h"

#include <cerrno>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <utility>

/// The way from client paths to paths of this system. Any thread.
namespace platform::posix {

/// `path` with "/" as separator and, where a name is not there as it is spelled, the
/// name that differs from it in the case of ASCII letters only (the first in byte order).
/// Names that are not there at all stay as they are.
std::string resolvePath(const std::string& path);

/// resolvePath for a path of the file functions: nothing, and errorFilenameTooLong, when
/// the client's system would not take its length.
std::optional<std::string> mapPath(const std::string& path);

/// Whether the client's system would take the path's length; else notes errorFilenameTooLong.
bool isPathLength(const std::string& path);

/// `path` with "/" as separator: where it leads when it is spelled as the names on the disk are.
std::string spelledPath(const std::string& path);

/// What resolvePath gives for a spelled path at which nothing is.
std::string resolveMissing(const std::string& spelled);

/// Whether anything bears that name, a link that leads nowhere too.
bool isThere(const std::string& systemPath);

/// `path` as an absolute client path, without repeated separators.
std::string absoluteClientPath(const std::string& path);

/// The folder of the host's executable as a client path; empty when it is not known.
std::string hostFolder();

/// The client's error number for an errno value of a call on `systemPath`.
Error errorOf(int number, const std::string& systemPath);

/// Notes the error number of errno for `systemPath`; always false.
bool failFromErrno(const std::string& systemPath);

/// Notes `error`; always false.
bool fail(Error error);

/// Makes `call` with the way to a file. Mostly a path is spelled as the names are: only where
/// nothing is found so is it looked for in another case. `call` makes no file, and gives 0 or an
/// errno value. False with the reason in lastError.
template <class Call>
bool callWithPath(const std::string& path, Call call) {
    if (!isPathLength(path)) {
        return false;
    }
    std::string way = spelledPath(path);
    int error = call(way.c_str());
    if (error == ENOENT) {
        std::string found = resolveMissing(way);
        if (found != way && !isThere(way)) { // a link that leads nowhere is there as it is spelled
            way = std::move(found);
            error = call(way.c_str());
        }
    }
    return error == 0 || fail(errorOf(error, way));
}

/// What stands at a client path, behind links too. False with the reason in lastError.
bool statusOf(const std::string& path, struct stat& status);

} // namespace platform::posix
