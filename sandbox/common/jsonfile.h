#pragma once

#include <filesystem>
#include <functional>
#include <optional>

#include <nlohmann/json.hpp>

#include "sandbox/platform/filewrites.h"

namespace sandbox {

/// Nothing when the file is not there, is no JSON or goes deeper than `deepestJson`.
std::optional<nlohmann::json> readJson(const std::filesystem::path& file);

/// Replaces the file as a whole. False, with the file as it was, when it cannot be
/// written or a text is not UTF-8.
bool writeJson(const std::filesystem::path& file, const nlohmann::json& value,
               Durability durability = Durability::synced);

/// Lets `change` work on the file's object, an empty one when there is none, and puts the
/// result in the file's place. No change that another process makes in this way at the same
/// time is lost. False, with the file as it was, when it holds something else or cannot be
/// written.
bool updateJson(const std::filesystem::path& file,
                const std::function<void(nlohmann::json&)>& change);

/// The lock of a file that several processes write.
std::filesystem::path lockOf(const std::filesystem::path& file);

} // namespace sandbox
