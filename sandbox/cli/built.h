#pragma once

#include <filesystem>
#include <functional>
#include <map>
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

/// What scenarios may ask of a thing by its name: field to text.
using NamedValues = std::map<std::string, std::map<std::string, std::string>>;

/// "md5", "fileMd5", "fileId" and "path" of every material.
NamedValues valuesOf(const std::vector<BuiltMaterial>& materials);

/// Replaces "{name.field}" in every text by the value; the field is behind the last dot.
nlohmann::json filledIn(const nlohmann::json& json, const NamedValues& values);
std::string filledIn(std::string text, const NamedValues& values);

/// Whether a list of material names, or "all", holds that name.
bool isNamed(const nlohmann::json& names, const std::string& name);

/// What the platform offers in the run of that phase, and what it expects of the client.
Offer offerOf(const Scenario& scenario, const std::vector<BuiltMaterial>& materials,
              const nlohmann::json& options);
ExpectedRun expectedRunOf(const nlohmann::json& options);

} // namespace sandbox
