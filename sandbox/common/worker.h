#pragma once

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <deque>
#include <functional>

#include "utils/mutex.h"

namespace sandbox {

/// One thread that runs what is posted, in order. The thread starts with the first job
/// and never ends, so the object must live as long as the process. Any thread may post,
/// a job too.
class Worker {
public:
    /// `where` names the worker in a failure event for a job that throws.
    explicit Worker(const char* where) : name(where) {}

    void post(std::function<void()> job);

    /// Whether every posted job has been run to its end.
    bool idle() const { return unfinished == 0; }

private:
    std::function<void()> take();
    void loop();

    const char* name;
    Mutex mutex;
    std::condition_variable posted;
    std::deque<std::function<void()>> jobs XR_GUARDED_BY(mutex);
    bool started XR_GUARDED_BY(mutex) = false;
    std::atomic<std::size_t> unfinished{0};
};

} // namespace sandbox
