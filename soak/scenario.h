#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace soak {

/// The scenario that lays the client of a soak out: one whose servers are at the address, and one
/// of whose files is in use all the time.
nlohmann::json scenarioOf(const std::string& address);

} // namespace soak
