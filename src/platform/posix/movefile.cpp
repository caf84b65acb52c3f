#include "platform/files.h"

#include "platform/posix/delayedmoves.h"
#include "platform/posix/filelock.h"
#include "platform/posix/movefile.h"
#include "platform/posix/systempath.h"

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

using posix::fail;
using posix::failFromErrno;
using posix::mapPath;

namespace {

bool sameFile(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

/// rename, but an existing target is never touched.
int renameToNew(const std::string& from, const std::string& to) {
    if (::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE) == 0) {
        return 0;
    }
    if (errno != EINVAL && errno != ENOSYS) {
        return -1;
    }
    // A file system without that flag: a second name fails on an existing target as well.
    return ::link(from.c_str(), to.c_str()) == 0 ? ::unlink(from.c_str()) : -1;
}

/// The name that `wanted` spells, in the folder that `mapped` was found in: a move of a
/// file onto itself may change the case of its name.
std::string respelled(const std::string& mapped, const std::string& wanted) {
    const std::string name = wanted.substr(wanted.find_last_of("\\/") + 1);
    return mapped.substr(0, mapped.rfind('/') + 1) + name;
}

bool delayMove(const std::string& from, const char* to, std::uint32_t flags) {
    posix::DelayedMove request;
    request.from = posix::absoluteClientPath(from);
    if (to) {
        request.to = posix::absoluteClientPath(to);
    }
    request.replace = (flags & moveReplaceExisting) != 0;
    return posix::appendDelayedMove(posix::hostFolder(), request);
}

} // namespace

namespace posix {

bool moveNow(const std::string& from, const std::string& to, bool replace) {
    const std::string source = resolvePath(from);
    std::string target = resolvePath(to);
    struct stat sourceStatus {};
    struct stat targetStatus {};
    if (::lstat(source.c_str(), &sourceStatus) != 0) {
        return failFromErrno(source);
    }
    const FileLock sourceLock(source);
    if (sourceLock.inUse()) {
        return fail(errorSharingViolation);
    }
    if (::lstat(target.c_str(), &targetStatus) == 0) {
        if (sameFile(sourceStatus, targetStatus)) {
            target = respelled(target, to);
            return ::rename(source.c_str(), target.c_str()) == 0 || failFromErrno(target);
        }
        if (!replace) {
            return fail(errorAlreadyExists);
        }
        if (S_ISDIR(targetStatus.st_mode) || S_ISDIR(sourceStatus.st_mode)) {
            return fail(errorAccessDenied);
        }
    }
    const FileLock targetLock(target);
    if (targetLock.inUse()) {
        return fail(errorSharingViolation);
    }
    const int result =
        replace ? ::rename(source.c_str(), target.c_str()) : renameToNew(source, target);
    return result == 0 || failFromErrno(target);
}

bool removeNow(const std::string& path) {
    const std::string target = resolvePath(path);
    struct stat status {};
    if (::lstat(target.c_str(), &status) != 0) {
        return failFromErrno(target);
    }
    if (S_ISDIR(status.st_mode)) {
        return fail(errorAccessDenied);
    }
    const FileLock lock(target);
    if (lock.inUse()) {
        return fail(errorSharingViolation);
    }
    return ::unlink(target.c_str()) == 0 || failFromErrno(target);
}

} // namespace posix

bool removeFile(const std::string& path) {
    return mapPath(path) && posix::removeNow(path);
}

bool moveFile(const std::string& from, const char* to, std::uint32_t flags) {
    const std::optional<std::string> source = mapPath(from);
    if (!source || (to && !mapPath(to))) {
        return false;
    }
    if (flags & moveDelayUntilReboot) {
        struct stat status {};
        return ::lstat(source->c_str(), &status) == 0 ? delayMove(from, to, flags)
                                                      : failFromErrno(*source);
    }
    return to ? posix::moveNow(from, to, (flags & moveReplaceExisting) != 0)
              : fail(errorInvalidParameter);
}

} // namespace platform
