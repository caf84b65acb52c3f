#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <vector>

/// What stands on the disk, listed and compared, so that nothing rests on what the code under
/// test says of itself. One thread.
namespace hostile {

/// Kind, size and MD5 of every entry below a folder, by its path from there ("/" separates).
/// Links are not followed.
using Listing = std::map<std::string, std::string>;

Listing listed(const std::filesystem::path& folder);

/// Of one entry.
std::string told(const std::filesystem::directory_entry& entry);

/// What is new, gone or other, as "+path", "-path" or "!path"; entries that `mayChange` begins
/// (a path itself, or a folder with a "/" behind it) are left out.
std::vector<std::string> differences(const Listing& before, const Listing& after,
                                     const std::vector<std::string>& mayChange);

} // namespace hostile
