#pragma once

#include <string>

/// Text operations on client paths, by the rules of the shell's path functions. They
/// do not look at the disk and, but for fileNameOf, know "\" as the only separator. Any
/// thread.
namespace platform {

/// Cuts the last element and the separator before it; a root keeps its separator
/// (PathRemoveFileSpecA).
std::string removeFileSpec(const std::string& path);

/// Joins with exactly one separator and resolves "." and ".." (PathAppendA). Separators
/// that `more` begins with are dropped; a drive or a server in it replaces `path`. Empty
/// when the joined text would not fit in 260 characters.
std::string appendPath(const std::string& path, const std::string& more);

/// True unless the path begins with "\" or a drive (PathIsRelativeA).
bool isRelativePath(const std::string& path);

/// What follows the last separator that has a name behind it, so that "a\b\" gives "b\".
/// "/" and ":" separate here too (PathFindFileNameA).
std::string fileNameOf(const std::string& path);

} // namespace platform
