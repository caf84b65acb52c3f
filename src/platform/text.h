#pragma once

#include <string>

namespace platform {

/// UTF-8 to wide text. Bytes that are not UTF-8 become U+FFFD. Wide text is UTF-16
/// where wchar_t has 16 bits, else UTF-32.
std::wstring toWide(const std::string& utf8);

/// Wide text to UTF-8. A lone surrogate or a value beyond U+10FFFF becomes U+FFFD.
std::string toUtf8(const std::wstring& wide);

} // namespace platform
