#pragma once

#include "platform/files.h"
#include "platform/lasterror.h"

#include <string_view>

namespace platform::win32 {

/// Whether the ANSI functions take a path of that length; notes the error when not.
inline bool fits(std::string_view path) {
    if (path.size() < maxPath) {
        return true;
    }
    setLastError(errorFilenameTooLong);
    return false;
}

} // namespace platform::win32
