#pragma once

#include <nlohmann/json.hpp>

#include "sandbox/cli/console.h"

namespace sandbox {

/// Shows a run's picture as tables: files with versions, filelist.xml, the stores, what waits
/// for a restart, started programs, notifications. `allEntries` as the picture was made.
void showPicture(const nlohmann::json& picture, bool allEntries, Console& console);

} // namespace sandbox
