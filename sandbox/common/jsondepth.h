#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

/// JSON of others. A value is copied, compared and written level by level on the stack, so a text
/// without end to its levels would end the program. Plain functions; any thread.
namespace sandbox {

/// Objects and arrays that may stand in each other.
inline constexpr std::size_t deepestJson = 1000;
/// What is wrong with a text that goes deeper.
inline constexpr const char* tooDeep = "objects and arrays stand in each other over 1000 levels";

/// The line, from 1, on which the text goes deeper than that; nothing when it does not. Of a text
/// that is no JSON only what stands ahead of the fault counts.
std::optional<std::size_t> lineTooDeep(std::string_view text);

/// The text's value; discarded when it is no JSON, or goes deeper than `deepestJson`.
nlohmann::json parsedJson(const std::string& text);

} // namespace sandbox
