#pragma once

#include "platform/posix/delayedmoves.h"

#include <string_view>

/// A line of the journal: "delete", "move" or "replace", the source, and for the last two
/// the target, separated by tabs and ended by a line feed. In paths, "%" and control bytes
/// stand as "%" and two hexadecimal digits.
namespace platform::posix {

/// The line, with its line feed.
std::string formatLine(const DelayedMove& request);

/// The request of a line without its line feed; nothing when it is none.
std::optional<DelayedMove> parseLine(std::string_view line);

} // namespace platform::posix
