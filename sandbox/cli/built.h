#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "sandbox/cli/scenario.h"
#include "sandbox/server/offer.h"

namespace sandbox {

/// A material whose file stands in the storage.
struct BuiltMaterial {
    MaterialPlan plan;
    OfferedMaterial offered;
    std::string path;    ///< the target as the client spells it
    std::string group;   ///< parameter "dependent"
    std::string fileMd5; ///< of the file that it brings, lower case
    std::uint64_t storedSize = 0;
};

/// Makes every material of the scenario and writes it into `storage`; `made` is told
/// after each. Throws std::runtime_error when a file cannot be written.
std::vector<BuiltMaterial> buildMaterials(const Scenario& scenario,
                                          const std::filesystem::path& storage,
                                          const std::function<void(std::size_t)>& made);

/// Replaces "{name.md5}", "{name.fileMd5}", "{name.fileId}" and "{name.path}" in every
/// text by what the material of that name has.
nlohmann::json filledIn(const nlohmann::json& json, const std::vector<BuiltMaterial>& materials);
std::string filledIn(std::string text, const std::vector<BuiltMaterial>& materials);

/// Whether a list of material names, or "all", holds that name.
bool isNamed(const nlohmann::json& names, const std::string& name);

/// What the platform offers in the run of that phase, and what it expects of the client.
Offer offerOf(const Scenario& scenario, const std::vector<BuiltMaterial>& materials,
              const nlohmann::json& options);
ExpectedRun expectedRunOf(const std::vector<BuiltMaterial>& materials,
                          const nlohmann::json& options);

} // namespace sandbox
