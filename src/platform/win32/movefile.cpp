#include "platform/files.h"
#include "platform/lasterror.h"
#include "platform/win32/windowsapi.h"

#include <cstring>

namespace platform {

static_assert(moveReplaceExisting == MOVEFILE_REPLACE_EXISTING);
static_assert(moveDelayUntilReboot == MOVEFILE_DELAY_UNTIL_REBOOT);

bool removeFile(const std::string& path) {
    return ::DeleteFileA(path.c_str()) != FALSE;
}

bool moveFile(const std::string& from, const char* to, std::uint32_t flags) {
    if (from.size() >= maxPath || (to && std::strlen(to) >= maxPath)) {
        setLastError(errorFilenameTooLong);
        return false;
    }
    return ::MoveFileExA(from.c_str(), to, flags) != FALSE;
}

} // namespace platform
