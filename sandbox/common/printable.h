#pragma once

#include <string>
#include <string_view>

namespace sandbox {

/// The text with each byte that may not go to a terminal as it is, control characters and what is
/// no UTF-8, written as "\x1b". For texts of others in what people read: names of files, answers
/// of servers, lines of logs. A text that is printable stays as it is, so doing it twice is
/// harmless; nobody can turn it back, as backslashes stay.
std::string printable(std::string_view text);

} // namespace sandbox
