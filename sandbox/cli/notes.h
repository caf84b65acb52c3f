#pragma once

#include <optional>
#include <string>

#include <nlohmann/json.hpp>

#include "host/notificationcenter.h"

/// The host's observations in words; shared by what is shown and what is compared.
namespace sandbox {

/// "file parameters" of a process event.
std::string programText(const nlohmann::json& event);

/// The text of a notification of type 14; empty for another type or a damaged record.
std::string notifiedVersion(const nlohmann::json& event);

/// A record of type 7: what the user interface and the package channel tell each other.
struct PackageNote {
    int code = 0;
    std::string text;

    bool isEvent() const { return code >= NC::eventUpgradeInfo; } ///< and no command
};

/// Nothing for another type or a damaged record.
std::optional<PackageNote> packageNote(const nlohmann::json& event);

/// The log line of an installation that the user started: it is confirmed without an event.
bool isConfirmedSilently(const std::string& logText);

bool isKind(const nlohmann::json& event, const char* kind);

} // namespace sandbox
