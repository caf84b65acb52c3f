#pragma once

#include <string>

/// The moves of platform/files.h without its limit on a path's length.
namespace platform::posix {

/// Moves within a volume; false with a number in lastError.
bool moveNow(const std::string& from, const std::string& to, bool replace);

/// Deletes a file that is not in use.
bool removeNow(const std::string& path);

} // namespace platform::posix
