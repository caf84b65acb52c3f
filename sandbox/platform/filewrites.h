#pragma once

#include <filesystem>
#include <string_view>

/// Writes that other processes may watch. Any thread.
namespace sandbox {

/// Appends with a single write, so that lines of several processes do not mix; makes the
/// file when it is not there. False when it cannot.
bool appendToFile(const std::filesystem::path& file, std::string_view bytes);

enum class Durability {
    replaced, ///< readers see the old or the new content and nothing between
    synced,   ///< so do those after a crash of the system
};

/// Puts `bytes` in place of the file's content, as a whole. Two writers need a lock of
/// their own.
bool replaceFile(const std::filesystem::path& file, std::string_view bytes, Durability durability);

} // namespace sandbox
