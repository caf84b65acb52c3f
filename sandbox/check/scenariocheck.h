#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include <nlohmann/json_fwd.hpp>

#include "sandbox/check/mistake.h"

namespace sandbox::check {

/// The right hashes of a scenario's material.
struct Hashes {
    std::string stored;
    std::string content;
};

/// Told for a material by its name, when the scenario can be read; may be slow.
using HashesOf = std::function<std::optional<Hashes>(const std::string& material)>;

/// Why a change of the client cannot be made, as `set` of a step tells it; empty when it can.
using SetRefusal = std::function<std::string(const nlohmann::json& change)>;

/// All mistakes of a scenario, in the order of their lines: what the format does not have, and
/// what the client would not do with its materials as their author must have meant. A refusal
/// that a step of the scenario expects is no mistake. `file` is its name in the result.
std::vector<Mistake> checkScenario(const std::string& text, const std::string& file,
                                   const HashesOf& hashesOf = {},
                                   const SetRefusal& refusalOfSet = {});

/// Those of its format alone.
std::vector<Mistake> checkFormat(const std::string& text, const std::string& file);

} // namespace sandbox::check
