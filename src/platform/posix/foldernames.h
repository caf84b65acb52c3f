#pragma once

#include <optional>
#include <string>

namespace platform::posix {

/// The entry of a folder that matches `name` without regard to case of letters in ASCII, the first
/// in the order of bytes, or none; nothing at all where no folder can be listed. A folder of many
/// entries is listed once: from then on the system tells which names come and go, so that the
/// answer is that of a new listing. It tells nothing of what others change behind the system's
/// back, as in a folder that is shared over the network. Any thread.
std::optional<std::optional<std::string>> findIgnoringCase(const std::string& systemFolder,
                                                           const std::string& name);

} // namespace platform::posix
