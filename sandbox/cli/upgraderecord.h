#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "sandbox/common/folders.h"

/// The upgrade record: the offer of a package and how far it has come, as the settings store
/// holds it and event 100 brings it.
namespace sandbox {

/// Value of a record's `status`: the package is there and is the announced one.
inline constexpr int packageOnDisk = 3;

/// The record of that text; an empty object for another one.
nlohmann::json recordOf(const std::string& text);

/// As the settings store holds it; an empty object for none.
nlohmann::json storedRecord(const Folders& folders);

/// The number of a record's `status`; 0 without one.
int statusOf(const nlohmann::json& record);

/// What a record's `status` says of its package, in words.
std::string stateText(const nlohmann::json& record);

} // namespace sandbox
