#pragma once

#include <optional>
#include <span>
#include <string>

namespace sandbox::check {

/// The known name that somebody may have meant by `name`; nothing for a known name itself, and
/// for one that is like none of them.
std::optional<std::string> meantBy(const std::string& name, std::span<const char* const> known);

} // namespace sandbox::check
