#pragma once

#include <string>

#include "sandbox/platform/delayed.h"

namespace sandbox {

/// Reads the value PendingFileRenameOperations of the registry, in UTF-8: pairs of texts
/// from and to, each with its terminating zero, and one zero more at the end. Paths come
/// as "\??\C:\file", with "!" in front of a target that may be overwritten and with "*1" or
/// "*2" in front of a path that the system has looked at before. Only requests for files
/// below `folder` (without regard to ASCII case) are taken; a damaged value gives faults.
/// Source: the documentation of MoveFileEx and of the Session Manager's registry entries.
PendingList readPendingRenames(const std::string& value, const std::string& folder);

} // namespace sandbox
