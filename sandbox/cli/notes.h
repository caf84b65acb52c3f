#pragma once

#include <string>

#include <nlohmann/json.hpp>

/// The host's observations in words; shared by what is shown and what is compared.
namespace sandbox {

/// "file parameters" of a process event.
std::string programText(const nlohmann::json& event);

/// The text of a notification of type 14; empty for another type or a damaged record.
std::string notifiedVersion(const nlohmann::json& event);

bool isKind(const nlohmann::json& event, const char* kind);

} // namespace sandbox
