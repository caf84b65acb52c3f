#pragma once

#include <cstddef>
#include <string>

/// Values of an initialization file, by the rules of the system's profile functions:
/// sections and keys match without regard to case, blanks around names and values are
/// dropped, one pair of matching quotes around a value goes, ";" begins a comment line,
/// the first match counts. Any thread.
namespace platform {

/// Text of a key, cut to `limit` - 1 bytes (GetPrivateProfileStringA).
std::string profileString(const std::string& file, const char* section, const char* key,
                          const std::string& defaultValue, std::size_t limit);

/// Number of a key: leading decimal (or 0x) digits with an optional sign; 0 for a text
/// with none; the default when the key is missing (GetPrivateProfileIntA).
int profileInt(const std::string& file, const char* section, const char* key, int defaultValue);

} // namespace platform
