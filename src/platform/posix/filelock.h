#pragma once

#include <string>

namespace platform::posix {

/// Tries to hold a file alone, as a system with mandatory sharing would before it moves
/// or deletes it: a file on which somebody else holds a flock is in use. Owns the lock
/// until it goes. Does not block.
class FileLock {
public:
    /// A file that is not there, or that cannot be opened or locked at all, counts as
    /// free: the call that follows tells what is wrong with it.
    explicit FileLock(const std::string& systemPath);
    ~FileLock();
    FileLock(const FileLock&) = delete;
    FileLock& operator=(const FileLock&) = delete;

    bool inUse() const { return busy; }

private:
    int descriptor = -1;
    bool busy = false;
};

} // namespace platform::posix
