#include "sandbox/report/logtime.h"

#include <chrono>
#include <string>

#include "sandbox/report/logline.h"

namespace sandbox::report {
namespace {

constexpr std::int64_t second = 1000;
constexpr std::int64_t minute = 60 * second;
constexpr std::int64_t hour = 60 * minute;
constexpr std::size_t clockLength = 8; // "20:12:54"
constexpr std::size_t dateLength = 10; // "2026-11-21"

/// Takes the numbers at the places of '0' in `pattern`; false where another character stands.
bool matches(std::string_view text, std::string_view pattern) {
    if (text.size() < pattern.size()) {
        return false;
    }
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        const bool isDigit = text[i] >= '0' && text[i] <= '9';
        if (pattern[i] == '0' ? !isDigit : text[i] != pattern[i]) {
            return false;
        }
    }
    return true;
}

int number(std::string_view text, std::size_t from, std::size_t length) {
    int value = 0;
    for (const char c : text.substr(from, length)) {
        value = value * 10 + (c - '0');
    }
    return value;
}

/// Up to three digits behind a point or a comma.
std::int64_t fraction(std::string_view text) {
    std::int64_t value = 0;
    std::int64_t unit = second;
    if (!text.empty() && (text[0] == '.' || text[0] == ',')) {
        for (std::size_t i = 1; i < text.size() && unit > 1 && matches(text.substr(i), "0"); ++i) {
            unit /= 10;
            value += unit * (text[i] - '0');
        }
    }
    return value;
}

/// Milliseconds of the day that ends `before`, 1970 being 0.
std::optional<std::int64_t> dateBefore(std::string_view before) {
    if (before.size() < dateLength + 1) {
        return std::nullopt;
    }
    const std::string_view date = before.substr(before.size() - dateLength - 1, dateLength);
    if (!matches(date, "0000-00-00") && !matches(date, "0000/00/00")) {
        return std::nullopt;
    }
    using namespace std::chrono;
    const year_month_day day{year(number(date, 0, 4)),
                             month(static_cast<unsigned>(number(date, 5, 2))),
                             std::chrono::day(static_cast<unsigned>(number(date, 8, 2)))};
    if (!day.ok()) {
        return std::nullopt;
    }
    return static_cast<std::int64_t>(sys_days(day).time_since_epoch().count()) * dayMilliseconds;
}

std::string padded(std::int64_t value, std::size_t width) {
    const std::string text = std::to_string(value);
    return std::string(width > text.size() ? width - text.size() : 0, '0') + text;
}

} // namespace

std::optional<LogTime> findTime(std::string_view prefix) {
    for (std::size_t at = 0; at + clockLength <= prefix.size(); ++at) {
        const std::string_view clock = prefix.substr(at);
        if (!matches(clock, "00:00:00")) {
            continue;
        }
        const std::int64_t ofDay = number(clock, 0, 2) * hour + number(clock, 3, 2) * minute +
                                   number(clock, 6, 2) * second +
                                   fraction(clock.substr(clockLength));
        const auto date = dateBefore(prefix.substr(0, at));
        return LogTime{date.value_or(0) + ofDay, date.has_value()};
    }
    return std::nullopt;
}

std::string timeText(std::int64_t at, bool withDate) {
    const std::int64_t ofDay = ((at % dayMilliseconds) + dayMilliseconds) % dayMilliseconds;
    std::string text = padded(ofDay / hour, 2) + ":" + padded(ofDay / minute % 60, 2) + ":" +
                       padded(ofDay / second % 60, 2) + "." + padded(ofDay % second, 3);
    if (withDate) {
        using namespace std::chrono;
        const year_month_day day{sys_days(days((at - ofDay) / dayMilliseconds))};
        text = padded(static_cast<int>(day.year()), 4) + "-" +
               padded(static_cast<unsigned>(day.month()), 2) + "-" +
               padded(static_cast<unsigned>(day.day()), 2) + " " + text;
    }
    return text;
}

} // namespace sandbox::report
