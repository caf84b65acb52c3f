#pragma once

#include <set>
#include <string>
#include <thread>

#include "utils/mutex.h"

/// Follows the plug-in's chains by its log lines. A run is a chain of the Kelvar channel
/// that got past its time gate; it begins and ends on one thread, the queue's worker.
/// Any thread.
class RunWatch {
public:
    /// Takes a line that the calling thread has written.
    void line(const std::string& text);

    int begunRuns();
    int endedRuns();

    /// Whether every chain that a queue has started has ended or will never go on, as so many
    /// will not whose requests were lost. Holds when no module of the client calls the plug-in
    /// at the moment.
    bool idle(std::size_t lostChains);

private:
    Mutex mutex;
    std::set<std::thread::id> inRun XR_GUARDED_BY(mutex);
    int begun XR_GUARDED_BY(mutex) = 0;
    int ended XR_GUARDED_BY(mutex) = 0;
    int openChains XR_GUARDED_BY(mutex) = 0;
    int parkedChains XR_GUARDED_BY(mutex) = 0; ///< that never end, as their channels want it
    std::set<std::thread::id> inAnswer XR_GUARDED_BY(mutex); ///< reading one of the upgrade server
};
