#include "platform/posix/filelock.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::posix {

FileLock::FileLock(const std::string& systemPath)
    : descriptor(::open(systemPath.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC)) {
    struct stat status {};
    if (descriptor >= 0 && ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
        busy = ::flock(descriptor, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK;
    }
}

FileLock::~FileLock() {
    if (descriptor >= 0) {
        ::close(descriptor);
    }
}

} // namespace platform::posix
