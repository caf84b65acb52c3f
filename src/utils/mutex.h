#pragma once

#include <condition_variable>
#include <mutex>

// Lock annotations that clang checks at compile time; empty elsewhere.
#if defined(__clang__)
#define XR_LOCK_ATTRIBUTE(x) __attribute__((x))
#else
#define XR_LOCK_ATTRIBUTE(x)
#endif
#define XR_GUARDED_BY(x) XR_LOCK_ATTRIBUTE(guarded_by(x))
#define XR_REQUIRES(x) XR_LOCK_ATTRIBUTE(requires_capability(x))

/// std::mutex with annotations.
class XR_LOCK_ATTRIBUTE(capability("mutex")) Mutex {
public:
    void lock() XR_LOCK_ATTRIBUTE(acquire_capability()) { mutex.lock(); }
    void unlock() XR_LOCK_ATTRIBUTE(release_capability()) { mutex.unlock(); }
    std::mutex& native() { return mutex; }

private:
    std::mutex mutex;
};

/// Holds a Mutex to the end of the scope.
class XR_LOCK_ATTRIBUTE(scoped_lockable) MutexLock {
public:
    explicit MutexLock(Mutex& mutex) XR_LOCK_ATTRIBUTE(acquire_capability(mutex))
        : lock(mutex.native()) {}
    ~MutexLock() XR_LOCK_ATTRIBUTE(release_capability()) = default;
    MutexLock(const MutexLock&) = delete;
    MutexLock& operator=(const MutexLock&) = delete;

    /// For waiting on a condition variable; owned again whenever the wait returns.
    std::unique_lock<std::mutex>& native() { return lock; }

private:
    std::unique_lock<std::mutex> lock;
};
