#pragma once

#include <nlohmann/json.hpp>

namespace sandbox {

/// Throws std::runtime_error that names the member when the object is not what a scenario's client
/// may have as its configuration. The modules read that as a whole: a wrong member would leave
/// them with none of the others.
void checkConfig(const nlohmann::json& config);

} // namespace sandbox
