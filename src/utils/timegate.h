#pragma once

#include <atomic>
#include <cstdint>

/// Time gate of a channel: lets a check through when more milliseconds of tick count have
/// gone by than it waits. Made once a channel, for all its chains in the process, of which
/// two can run at a time. Each value stands for itself: the worst of a race is a run more or
/// less. Any thread.
class TimeGate {
public:
    /// `key` of the settings store holds the tick count of the last check; a start without
    /// one waits `firstWait`, every other check `wait`.
    constexpr TimeGate(const char* settingKey, std::int64_t firstWaitMs, std::int64_t waitMs)
        : key(settingKey), firstWait(firstWaitMs), wait(waitMs) {}

    /// Takes over the time of the last check from the settings; a first start begins now.
    void load();

    /// Whether a check may go on now. With the test file beside the host's executable that
    /// file's wait counts, and a first start stays one.
    bool passes();

    /// Begins the next wait now and stores its time.
    void restart();

private:
    const char* const key;
    const std::int64_t firstWait;
    const std::int64_t wait;
    std::atomic<std::int64_t> lastCheckTick = 0; ///< a tick count, zero-extended
    std::atomic<bool> firstCheckPending = false; ///< since a start with no stored time
};
