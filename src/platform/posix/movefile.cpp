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
using posix::isPathLength;

namespace {

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

/// A name on the disk, whether or not anything is there.
class Place {
public:
    explicit Place(const std::string& clientPath) : path(posix::spelledPath(clientPath)) {
        look();
        if (error == ENOENT) {
            std::string found = posix::resolveMissing(path);
            if (found != path) {
                path = std::move(found);
                look();
            }
        }
    }

    const std::string& systemPath() const { return path; }
    bool isThere() const { return error == 0; }
    bool isFolder() const { return isThere() && S_ISDIR(status.st_mode); }
    bool isSame(const Place& other) const {
        return isThere() && other.isThere() && status.st_dev == other.status.st_dev &&
               status.st_ino == other.status.st_ino;
    }

    /// Notes why nothing is there; always false.
    bool failMissing() const { return fail(posix::errorOf(error, path)); }

private:
    void look() { error = ::lstat(path.c_str(), &status) == 0 ? 0 : errno; }

    std::string path;
    struct stat status {};
    int error = 0;
};

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
    const Place source(from);
    if (!source.isThere()) {
        return source.failMissing();
    }
    const FileLock sourceLock(source.systemPath());
    if (sourceLock.inUse()) {
        return fail(errorSharingViolation);
    }
    const Place place(to);
    std::string target = place.systemPath();
    if (place.isSame(source)) {
        target = respelled(target, to);
        return ::rename(source.systemPath().c_str(), target.c_str()) == 0 || failFromErrno(target);
    }
    if (place.isThere() && !replace) {
        return fail(errorAlreadyExists);
    }
    if (place.isFolder() || (place.isThere() && source.isFolder())) {
        return fail(errorAccessDenied);
    }
    const FileLock targetLock(target);
    if (targetLock.inUse()) {
        return fail(errorSharingViolation);
    }
    const int result = replace ? ::rename(source.systemPath().c_str(), target.c_str())
                               : renameToNew(source.systemPath(), target);
    return result == 0 || failFromErrno(target);
}

bool removeNow(const std::string& path) {
    const Place target(path);
    if (!target.isThere()) {
        return target.failMissing();
    }
    if (target.isFolder()) {
        return fail(errorAccessDenied);
    }
    const FileLock lock(target.systemPath());
    if (lock.inUse()) {
        return fail(errorSharingViolation);
    }
    return ::unlink(target.systemPath().c_str()) == 0 || failFromErrno(target.systemPath());
}

} // namespace posix

bool removeFile(const std::string& path) {
    return isPathLength(path) && posix::removeNow(path);
}

bool moveFile(const std::string& from, const char* to, std::uint32_t flags) {
    if (!isPathLength(from) || (to && !isPathLength(to))) {
        return false;
    }
    if (flags & moveDelayUntilReboot) {
        const Place source(from);
        return source.isThere() ? delayMove(from, to, flags) : source.failMissing();
    }
    return to ? posix::moveNow(from, to, (flags & moveReplaceExisting) != 0)
              : fail(errorInvalidParameter);
}

} // namespace platform
