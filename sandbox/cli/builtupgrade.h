#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "sandbox/cli/built.h"
#include "sandbox/cli/clientsystem.h"
#include "sandbox/cli/upgradeplan.h"
#include "sandbox/server/upgradeoffer.h"

namespace sandbox {

/// What the upgrade server has in one run, with its files in the storage.
struct BuiltUpgrade {
    UpgradePlan plan;
    UpgradeOffer offer;
    std::uint64_t packageSize = 0;
    std::map<std::string, std::string> names; ///< "package" or the file's, by file id
    std::string address;                      ///< of the server
};

/// Makes the files of the plan. The package's program is the system's own.
BuiltUpgrade buildUpgrade(const UpgradePlan& plan, const Scenario& scenario,
                          const ClientSystem& system, const std::filesystem::path& binaries,
                          const std::string& address);

/// What a client of that scenario has to send in the run of these options.
ExpectedUpgrade expectedUpgradeOf(const Scenario& scenario, const BuiltUpgrade& built,
                                  const nlohmann::json& options);

/// Adds "md5", "url" and "size" of "package" and of each file, by its name.
void addValues(const BuiltUpgrade& built, NamedValues& values);

/// The text that the client stores of the offered package in that state.
std::string recordText(const BuiltUpgrade& built, int status, bool byUser);

} // namespace sandbox
