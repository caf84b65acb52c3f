#pragma once

#include <string>
#include <vector>

namespace sandbox {

/// Splits a parameter text as programs of the client's system do: blanks and tabs
/// separate, double quotes hold a piece together, a backslash stands for itself unless
/// a run of them comes before a quote, where two make one and an odd one makes the quote
/// a plain character; two quotes within a quoted piece make one.
std::vector<std::string> splitParameters(const std::string& text);

} // namespace sandbox
