#pragma once

#include <cstdint>

namespace platform {

/// Error numbers of the client's system, as the log shows them.
enum Error : std::uint32_t {
    errorNone = 0,
    errorFileNotFound = 2,
    errorPathNotFound = 3,
    errorAccessDenied = 5,
    errorNotSameDevice = 17,
    errorWriteFault = 29,
    errorSharingViolation = 32,
    errorInvalidParameter = 87,
    errorDiskFull = 112,
    errorModuleNotFound = 126,
    errorProcNotFound = 127,
    errorDirNotEmpty = 145,
    errorAlreadyExists = 183,
    errorBadExeFormat = 193,
    errorFilenameTooLong = 206,
};

/// Number of the calling thread's last failed call of this layer. A call that works
/// may leave an older number standing.
std::uint32_t lastError();

/// Sets that number. Only the backends and their stand-ins call it.
void setLastError(std::uint32_t error);

} // namespace platform
