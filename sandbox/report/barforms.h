#pragma once

#include <string>
#include <string_view>

#include "sandbox/report/timeline.h"

/// Which lines of a log begin and end requests, transfers and moves. Constant data; any thread.
namespace sandbox::report {

/// A line that begins a bar, and how the bar is called in front of the line's value.
struct BarForm {
    std::string_view begins;
    Kind kind;
    const char* title;
    const char* channel = ""; ///< whose next chain ends it at the latest
    const char* url = "";     ///< what its address ends with, where the line does not tell it
};

/// Null for a line that begins none.
const BarForm* barFormOf(const LogLine& line);

std::string titleOf(const LogLine& line, const BarForm& form);

/// The channel whose request a line ends, by the log alone; empty for none.
std::string answeredChannel(const LogLine& line);

/// The channel whose chain begins with the line; empty for none. What an earlier one still
/// waited for then does not come any more: its process has ended, or it was told to stop.
std::string begunChannel(const LogLine& line);

} // namespace sandbox::report
