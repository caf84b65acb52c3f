#pragma once

#include <string>

/// What names of the update platform may become paths. Texts only; any thread.
namespace materialnames {

/// Whether a text names a file in a folder: not empty, no separator, no colon, no zero
/// byte, no device of the system ("nul", "com1.txt"), and not made of dots and blanks
/// alone. UTF-8 too: such names are stored as JSON.
bool isPlainName(const std::string& name);

/// Whether a relative path leads strictly below the folder that it starts from, at no
/// place above it: no root, no drive, no stream, no device, no ".." that climbs out; and
/// whether it is UTF-8.
bool staysBelow(const std::string& path);

/// Whether a path that stays below its folder is one of the folder's own files, the one
/// called `name`, however it is spelled.
bool isSameFile(const std::string& path, const std::string& name);

} // namespace materialnames
