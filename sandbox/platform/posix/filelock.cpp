#include "sandbox/platform/filelock.h"

#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace sandbox {

namespace {

/// The file's first byte, which Wine locks for LockFileEx.
struct flock firstByte() {
    struct flock place = {};
    place.l_type = F_WRLCK;
    place.l_whence = SEEK_SET;
    place.l_len = 1;
    return place;
}

/// Of the open file and not of the process, so that its threads shut each other out too.
bool lock(int descriptor, FileLock::Wait wait) {
    struct flock place = firstByte();
    const int command = wait == FileLock::Wait::untilFree ? F_OFD_SETLKW : F_OFD_SETLK;
    int result = 0;
    do {
        result = ::fcntl(descriptor, command, &place);
    } while (result != 0 && errno == EINTR);
    return result == 0;
}

} // namespace

FileLock::FileLock(const std::filesystem::path& file, Wait wait) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0644);
    if (descriptor >= 0 && !lock(descriptor, wait)) {
        ::close(descriptor);
        return;
    }
    handle = descriptor;
}

FileLock::~FileLock() {
    if (isHeld()) {
        ::close(static_cast<int>(handle));
    }
}

bool FileLock::isTaken(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDWR | O_CLOEXEC);
    if (descriptor < 0) {
        return false;
    }
    struct flock place = firstByte();
    const bool taken = ::fcntl(descriptor, F_OFD_GETLK, &place) == 0 && place.l_type != F_UNLCK;
    ::close(descriptor);
    return taken;
}

} // namespace sandbox
