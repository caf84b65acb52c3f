#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sandbox::report {

/// One line that the plug-in wrote, as far as the log tells. What stands in front of its text
/// is the log's own: a time, a level and a thread are taken where they can be recognised.
struct LogLine {
    std::size_t number = 0;         ///< in the file, from 1
    std::optional<std::int64_t> at; ///< ms; the log's own clock counted as if it were UTC
    std::optional<int> level;
    std::string thread; ///< empty: not told
    std::string text;   ///< valid UTF-8, without blanks at its end
};

/// A log file. Lines of other modules are left out.
struct Log {
    std::vector<LogLine> lines;
    std::size_t others = 0;     ///< lines that are not the plug-in's
    std::size_t repaired = 0;   ///< lines with bytes that were not UTF-8
    bool endsInMidLine = false; ///< the last line has no end; what there is of it is left out
    bool hasTimes = false;      ///< every line has a time
    bool hasDates = false;      ///< and a date with it
    bool hasThreads = false;    ///< every line has its thread
};

/// Reads a log leniently: any prefix, both kinds of line ends, text that is cut anywhere.
/// Source of the lines: docs/log-reference.md. Never throws for what the text holds.
Log readLog(std::string_view text);

/// "20:12:54.789", with the date in front if `withDate`.
std::string timeText(std::int64_t at, bool withDate);

/// `text` with U+FFFD in place of bytes that are not UTF-8.
std::string validUtf8(std::string_view text);

} // namespace sandbox::report
