#pragma once

#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>

namespace platform {

/// Milliseconds since the system started, in 32 bits: wraps to 0 after 49.7 days.
std::uint32_t tickCount();

/// Blocks the calling thread.
void sleepFor(std::uint32_t milliseconds);

/// Waits on `condition` until `ready` holds or the time is up; returns `ready()`.
/// `lock` is held on entry, on return and whenever `ready` runs.
bool waitFor(std::condition_variable& condition, std::unique_lock<std::mutex>& lock,
             std::uint32_t milliseconds, const std::function<bool()>& ready);

/// Seconds since 1970-01-01 00:00 UTC.
std::int64_t wallClock();

} // namespace platform
