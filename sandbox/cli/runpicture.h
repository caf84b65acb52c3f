#pragma once

#include <nlohmann/json.hpp>

#include "sandbox/cli/clientsystem.h"

namespace sandbox {

/// Everything that stands in the folder of a run, as the members of "show --json". Of
/// filelist.xml the entries that are new or changed since the layout, or all. Reads only.
nlohmann::json pictureOf(const ClientSystem& system, bool allEntries);

} // namespace sandbox
