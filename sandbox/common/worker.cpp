#include "sandbox/common/worker.h"

#include <thread>

#include "sandbox/common/events.h"

namespace sandbox {

void Worker::post(std::function<void()> job) {
    ++unfinished;
    MutexLock lock(mutex);
    jobs.push_back(std::move(job));
    if (!started) {
        started = true;
        std::thread([this] { loop(); }).detach();
    }
    posted.notify_one();
}

std::function<void()> Worker::take() {
    MutexLock lock(mutex);
    while (jobs.empty()) {
        posted.wait(lock.native());
    }
    std::function<void()> job = std::move(jobs.front());
    jobs.pop_front();
    return job;
}

void Worker::loop() {
    while (true) {
        std::function<void()> job = take();
        guarded(name, job);
        job = nullptr; // what the job holds is released before it counts as finished
        --unfinished;
    }
}

} // namespace sandbox
