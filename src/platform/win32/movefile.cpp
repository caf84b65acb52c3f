#include "platform/files.h"
#include "platform/lasterror.h"
#include "platform/win32/windowsapi.h"

#include <cstring>

namespace platform {

static_assert(moveReplaceExisting == MOVEFILE_REPLACE_EXISTING);
static_assert(moveDelayUntilReboot == MOVEFILE_DELAY_UNTIL_REBOOT);

namespace {

bool fits(const char* path) {
    if (std::strlen(path) < maxPath) {
        return true;
    }
    setLastError(errorFilenameTooLong);
    return false;
}

} // namespace

bool removeFile(const std::string& path) {
    return fits(path.c_str()) && ::DeleteFileA(path.c_str()) != FALSE;
}

bool moveFile(const std::string& from, const char* to, std::uint32_t flags) {
    return fits(from.c_str()) && (!to || fits(to)) &&
           ::MoveFileExA(from.c_str(), to, flags) != FALSE;
}

} // namespace platform
