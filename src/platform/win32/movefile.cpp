#include "platform/files.h"
#include "platform/win32/pathlimit.h"
#include "platform/win32/windowsapi.h"

namespace platform {

using win32::fits;

static_assert(moveReplaceExisting == MOVEFILE_REPLACE_EXISTING);
static_assert(moveDelayUntilReboot == MOVEFILE_DELAY_UNTIL_REBOOT);

bool removeFile(const std::string& path) {
    return fits(path) && ::DeleteFileA(path.c_str()) != FALSE;
}

bool moveFile(const std::string& from, const char* to, std::uint32_t flags) {
    return fits(from) && (!to || fits(to)) && ::MoveFileExA(from.c_str(), to, flags) != FALSE;
}

} // namespace platform
