#pragma once

#include <string>

/// What names of the update platform may become paths. Texts only; any thread.
namespace materialnames {

/// Whether a text names a file in a folder: not empty, no separator, no colon, no zero
/// byte, and not made of dots and blanks alone. UTF-8 too: such names are stored as JSON.
bool isPlainName(const std::string& name);

/// Whether a relative path leads strictly below the folder that it starts from, at no
/// place above it: no root, no drive, no stream, no ".." that climbs out.
bool staysBelow(const std::string& path);

} // namespace materialnames
