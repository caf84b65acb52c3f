#include "xtaskqueue.h"

#include <thread>

#include "host/log.h"

namespace {

constexpr std::uint32_t busyWaitMs = 100;

} // namespace

int XTaskQueue::addTask(const std::shared_ptr<IXTaskBase>& task) {
    XLOG(logProgress, "update plugin, queue, add task ...");
    const std::shared_ptr<Event> busy = busyEvent.get();
    // An absent event ends the wait at once and counts as free, like a signalled one.
    if (busy && !busy->wait(busyWaitMs)) {
        XLOG(logProgress, "update plugin, queue, has task, ignore");
        return 1;
    }
    run(task);
    return 0;
}

int XTaskQueue::run(const std::shared_ptr<IXTaskBase>& task) {
    XLOG(logProgress, "update plugin, queue, run ...");
    busyEvent.exchange(std::make_shared<Event>(Event::Reset::manual));
    MutexLock guard(lock);
    current = task;
    std::thread([this, task] { work(task); }).detach();
    return 0;
}

void XTaskQueue::work(const std::shared_ptr<IXTaskBase>& task) {
    const auto doneEvent = std::make_shared<Event>(Event::Reset::manual);
    task->check([doneEvent](bool succ) {
        XLOG(logProgress, "update plugin, queue, task finished, succ:", succ);
        doneEvent->set();
    });
    doneEvent->wait();
    freeQueue();
    MutexLock guard(lock);
    current = nullptr;
    XLOG(logProgress, "update plugin, queue, run end.");
}

int XTaskQueue::stop() {
    std::shared_ptr<IXTaskBase> running;
    {
        MutexLock guard(lock);
        running = current;
    }
    if (running) {
        running->stop();
    }
    freeQueue();
    return 0;
}

void XTaskQueue::freeQueue() {
    // After a stop this may be the event of a newer run, which then counts as ended.
    if (const std::shared_ptr<Event> busy = busyEvent.exchange(nullptr)) {
        busy->set();
    }
}
