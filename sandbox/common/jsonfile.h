#pragma once

#include <filesystem>
#include <optional>

#include <nlohmann/json.hpp>

#include "sandbox/platform/filewrites.h"

namespace sandbox {

/// Nothing when the file is not there or is no JSON.
std::optional<nlohmann::json> readJson(const std::filesystem::path& file);

/// Replaces the file as a whole. False, with the file as it was, when it cannot be
/// written or a text is not UTF-8.
bool writeJson(const std::filesystem::path& file, const nlohmann::json& value,
               Durability durability = Durability::synced);

} // namespace sandbox
