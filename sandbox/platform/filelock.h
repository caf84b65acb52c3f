#pragma once

#include <cstdint>
#include <filesystem>

namespace sandbox {

/// A lock that one holder at a time has, among all processes and threads of a run; programs
/// of this system and of Windows under Wine share it. It goes with its holder's process.
/// The file is made when it is not there, stays, and has no content.
class FileLock {
public:
    enum class Wait { untilFree, no };

    /// Nothing is held when the file cannot be made or, without waiting, when somebody else
    /// holds it.
    explicit FileLock(const std::filesystem::path& file, Wait wait = Wait::untilFree);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    bool isHeld() const { return handle != -1; }

    /// Whether somebody holds the lock; asking is in nobody's way. On posix only.
    static bool isTaken(const std::filesystem::path& file);

private:
    std::intptr_t handle = -1; ///< the descriptor on posix, the handle on Windows
};

} // namespace sandbox
