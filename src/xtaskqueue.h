#pragma once

#include <memory>

#include "utils/mutex.h"
#include "xevent.h"
#include "xtaskbase.h"

/// Runs one chain at a time on a detached thread and drops any other. A queue lives as
/// long as the process: its workers point to it.
class XTaskQueue {
public:
    /// Starts a run and returns 0; while a chain is running waits up to 100 ms for its
    /// end, then drops `task` and returns 1. Throws std::system_error when no thread can
    /// be started. Of two callers at once on a free queue both may start one.
    int addTask(const std::shared_ptr<IXTaskBase>& task);

    /// Marks the running chain as stopped and counts the queue as free at once; the old
    /// chain goes on beside a new one until it ends by itself. Always 0. Any thread.
    int stop();

private:
    int run(const std::shared_ptr<IXTaskBase>& task);
    void work(const std::shared_ptr<IXTaskBase>& task);
    void freeQueue();

    EventSlot busyEvent; ///< set while a chain runs, absent while idle
    Mutex lock;
    std::shared_ptr<IXTaskBase> current XR_GUARDED_BY(lock);
};
