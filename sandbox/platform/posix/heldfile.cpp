#include "sandbox/platform/heldfile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace sandbox {

HeldFile::HeldFile(const std::filesystem::path& file) {
    const int descriptor = ::open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor >= 0 && ::flock(descriptor, LOCK_EX | LOCK_NB) != 0) {
        ::close(descriptor);
        return;
    }
    handle = descriptor;
}

HeldFile::~HeldFile() {
    if (isHeld()) {
        ::close(static_cast<int>(handle));
    }
}

} // namespace sandbox
