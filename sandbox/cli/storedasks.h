#pragma once

#include <nlohmann/json.hpp>

#include "sandbox/cli/clientstate.h"

namespace sandbox {

/// Stands in the object "asks" of a run for what the client has stored.
inline constexpr const char* storedValue = "<stored>";

/// The options of a run with what the client has stored filled in: the version of its data, the
/// versions of the data files.
nlohmann::json withStoredAsks(nlohmann::json options, const ClientState& client);

} // namespace sandbox
