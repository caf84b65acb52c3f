#pragma once

#include <cstddef>
#include <map>
#include <string>

#include <nlohmann/json.hpp>

#include "sandbox/check/mistake.h"

namespace sandbox::check {

/// A JSON text with the line of every value, by the value's JSON pointer.
class JsonText {
public:
    /// A text that is no JSON or goes deeper than `deepestJson`, and a member that stands twice,
    /// are mistakes; of the former the value is discarded.
    JsonText(const std::string& text, Mistakes& mistakes);

    const nlohmann::json& value() const { return parsed; }

    /// The line on which the value begins, or, when it is not there, that of the nearest value
    /// around it. A member begins with its name.
    std::size_t lineOf(std::string pointer) const;

private:
    nlohmann::json parsed;
    std::map<std::string, std::size_t> lines;
};

/// The pointer of a member of what `pointer` leads to.
std::string memberOf(const std::string& pointer, const std::string& name);
std::string elementOf(const std::string& pointer, std::size_t index);

} // namespace sandbox::check
