#pragma once

#include <nlohmann/json.hpp>

#include "sandbox/report/explanation.h"

namespace sandbox::report {

/// The members of `explain --json`; docs/xsandbox.md tells each. What is not told is null.
nlohmann::json toJson(const Material& row);
nlohmann::json toJson(const KelvarRun& run, const Explanation& told);
/// All of the log but its runs.
nlohmann::json logJson(const Explanation& told);

} // namespace sandbox::report
