#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "sandbox/trayhost/exitstatus.h"
#include "sandbox/trayhost/runwatch.h"

struct HostOptions {
    std::uint32_t interval = 100; ///< milliseconds between two ticks
    std::optional<std::uint32_t> ticks;
    std::optional<int> runs;
    std::optional<std::uint32_t> limit; ///< milliseconds for the whole
};

/// The host's loop. Lives as long as the process: the plug-in's threads reach it with
/// their log lines. Used by main's thread.
class Host {
public:
    /// Listens to the log from now on, when there is one.
    explicit Host(const HostOptions& wanted);

    /// Calls `tick`, which may be empty, at the interval until the options, a signal or
    /// the stop file end it. Once the wanted runs have begun no tick follows: one could
    /// start a further run in the moment in which the last one ends.
    ExitStatus drive(const std::function<void()>& tick);

    /// Waits until nothing of the plug-in works any more, so that the process can end in
    /// order; false, after a message, when that does not come in that time.
    bool settle(std::int64_t milliseconds);

private:
    bool isFinished();
    bool mayTick();
    bool isPastLimit() const;
    bool isIdle();

    const HostOptions options;
    const std::int64_t started;
    std::uint32_t ticks = 0;
    RunWatch watch;
};
