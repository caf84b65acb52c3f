#pragma once

#include <cstddef>
#include <string>

/// Values of an initialization file, by the rules of the system's profile functions.
/// A line ends at CR or LF; blanks around it, its names and its value are dropped.
/// "[name]" begins a section, up to the first "]"; a line that begins with ";" is a
/// comment, as is one without "=". Names match without regard to case. The first section
/// of a name and the first key in it count. One pair of matching quotes around a value
/// goes; ";" within a value stays. The file is named by a full path; one that is not
/// there has no keys. Any thread; blocks while the file is read.
namespace platform {

/// Text of a key, or the default without its trailing blanks; cut to `limit` - 1 bytes
/// (GetPrivateProfileStringA).
std::string profileString(const std::string& file, const char* section, const char* key,
                          const std::string& defaultValue, std::size_t limit);

/// Number of a key: an optional sign and the leading decimal digits, or after "0x", "0o"
/// or "0b" those of that base, modulo 2^32; 0 for a text with none; the default when the
/// key is missing or its value is empty (GetPrivateProfileIntA).
int profileInt(const std::string& file, const char* section, const char* key, int defaultValue);

} // namespace platform
