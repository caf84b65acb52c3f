#pragma once

#include <filesystem>
#include <string>

namespace sandbox {

/// A native path in UTF-8, and back; on posix its bytes as they are.
std::string pathText(const std::filesystem::path& native);
std::filesystem::path pathOf(const std::string& text);

/// The text of a native path as the client spells it, with "\" between its elements.
std::string toClientPath(const std::filesystem::path& native);

/// The key under which a client path is compared: lower case (ASCII), "\" only.
std::string comparablePath(const std::string& clientPath);

/// Whether two names are the same without regard to (ASCII) case.
bool sameName(const std::string& a, const std::string& b);

/// What stands behind the last separator of a client path, as it is spelled there.
std::string leafOf(const std::string& clientPath);

} // namespace sandbox
