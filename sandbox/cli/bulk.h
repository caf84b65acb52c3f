#pragma once

#include <vector>

#include <nlohmann/json.hpp>

#include "sandbox/cli/scenario.h"

namespace sandbox {

/// Materials by rule, for figures of speed: `count` data files of `minSize` to `maxSize`
/// bytes in folders of 50, `cabinets` of a hundred of them in cabinets of the `methods`
/// in turn.
void appendBulk(const nlohmann::json& rule, std::vector<MaterialPlan>& materials);

} // namespace sandbox
