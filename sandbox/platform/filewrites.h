#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

/// Files that others read and write at the same time. Any thread.
namespace sandbox {

/// The whole content; nothing when it cannot be read or is no file: a folder, a pipe. Is in no
/// writer's way.
std::optional<std::string> readFile(const std::filesystem::path& file);

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
