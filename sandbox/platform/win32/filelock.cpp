#include "sandbox/platform/filelock.h"

#include <windows.h>

namespace sandbox {

FileLock::FileLock(const std::filesystem::path& file, Wait wait) {
    const HANDLE opened = CreateFileW(file.c_str(), GENERIC_READ | GENERIC_WRITE,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                      nullptr, OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (opened == INVALID_HANDLE_VALUE) {
        return;
    }
    const DWORD flags =
        LOCKFILE_EXCLUSIVE_LOCK | (wait == Wait::no ? LOCKFILE_FAIL_IMMEDIATELY : 0);
    OVERLAPPED place{}; // the first byte, as on posix
    if (LockFileEx(opened, flags, 0, 1, 0, &place) == 0) {
        CloseHandle(opened);
        return;
    }
    handle = reinterpret_cast<std::intptr_t>(opened);
}

FileLock::~FileLock() {
    if (isHeld()) {
        CloseHandle(reinterpret_cast<HANDLE>(handle));
    }
}

} // namespace sandbox
