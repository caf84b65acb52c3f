#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/cli/scenario.h"
#include "sandbox/server/upgradeoffer.h"

namespace sandbox {

/// What a scenario says of one file that the upgrade server has, beside its bytes.
struct ServedPlan {
    std::string version;
    std::string md5;                ///< as announced, when not the right one
    std::optional<std::string> url; ///< likewise
};

/// The whole-client package.
struct PackagePlan {
    ServedPlan served;
    std::size_t size = 0;
    std::optional<std::uint64_t> announced; ///< size, when not the right one
    std::string content;
    bool isForce = false;
    bool fails = false;            ///< its setup changes nothing
    std::vector<ClientFile> files; ///< that its setup puts in place
};

/// One of the fixed data files.
struct ServedFilePlan {
    ServedPlan served;
    int type = 0;
    std::string name; ///< of that type
    FilePlan file;
};

struct UpgradePlan {
    std::optional<PackagePlan> package;
    std::vector<ServedFilePlan> files;
};

/// What a scenario's object "upgrade" says. Throws std::runtime_error with the reason.
UpgradePlan readUpgrade(const nlohmann::json& json);

/// The object "upgrade" as it stands in the run of these options.
nlohmann::json upgradeIn(const nlohmann::json& upgrade, const nlohmann::json& options);

} // namespace sandbox
