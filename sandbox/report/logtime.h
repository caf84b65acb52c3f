#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace sandbox::report {

inline constexpr std::int64_t dayMilliseconds = 24LL * 60 * 60 * 1000;

/// A time as a log's prefix tells it. Without a date it counts from midnight.
struct LogTime {
    std::int64_t milliseconds = 0;
    bool hasDate = false;
};

/// The first "20:12:54", with ".789" or ",789" behind it and "2026-11-21" in front of it where
/// they stand. Nothing for a text without one.
std::optional<LogTime> findTime(std::string_view prefix);

} // namespace sandbox::report
