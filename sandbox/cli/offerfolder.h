#pragma once

#include <filesystem>
#include <optional>
#include <string>

#include "sandbox/check/scenariocheck.h"

/// The materials of a scenario outside of a run.
namespace sandbox {

/// The hashes of one material, which is built into a temporary folder. Nothing when the scenario
/// cannot be read or has no such material.
std::optional<check::Hashes> hashesIn(const std::filesystem::path& scenario,
                                      const std::string& material);

/// Builds all materials into a new folder, beside `materials.json`: what the platform answers to
/// BatchGetMaterialMeta and GetFullPacketDiff. Throws std::runtime_error when the scenario cannot
/// be read or the folder is there and not empty.
void writeOffer(const std::filesystem::path& scenario, const std::filesystem::path& folder);

} // namespace sandbox
