#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "sandbox/report/knowledge.h"

namespace sandbox::report {

/// Takes what a report needs out of a scenario. Source: sandbox/scenarios/README.md. What is of
/// the wrong kind is left out.
void takeScenario(const nlohmann::json& scenario, Knowledge& known);

/// A member that is a text; empty for anything else.
std::string textOf(const nlohmann::json& object, const char* member);

/// Without the blanks and line ends behind it.
std::string trimmedEnd(const std::string& text);

} // namespace sandbox::report
