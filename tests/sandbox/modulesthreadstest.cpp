#include <atomic>
#include <cstring>
#include <gtest/gtest.h>
#include <thread>

#include "host/notificationcenter.h"
#include "host/xnbase.h"
#include "moduleslab.h"
#include "sandbox/modules/xnbase/listener.h"
#include "sandbox/trayhost/runwatch.h"

namespace {

bool isIdle(const wchar_t* module) {
    return lab::bind<sandbox::Idle>(module, "sandboxIdle")();
}

/// Counts into its maker, so that it can be looked at when it is gone.
class Task final : public XN::Task {
public:
    struct Trace {
        std::atomic<int> runs{0};
        std::atomic<int> gone{0};
        std::thread::id thread;
    };
    Task(Trace& kept, bool isThrowing) : trace(kept), throws(isThrowing) {}
    long addRef() override { return ++count; }
    long release() override {
        const long left = --count;
        if (left == 0) {
            ++trace.gone;
            delete this;
        }
        return left;
    }
    void run() override {
        trace.thread = std::this_thread::get_id();
        ++trace.runs;
        if (throws) {
            throw std::runtime_error("thrown by a task");
        }
    }

private:
    ~Task() = default;
    Trace& trace;
    bool throws;
    std::atomic<long> count{0};
};

TEST(ModuleTasks, RunOnceOnAnotherThreadAndAreReleased) {
    const lab::Events events;
    Task::Trace good;
    Task::Trace bad;
    const auto post = lab::bind<xnbase::postTask>(L"xnbase.dll", "postTask");
    post(0, new Task(bad, true));
    post(0, new Task(good, false));
    ASSERT_TRUE(lab::eventually([] { return isIdle(L"xnbase.dll"); }));
    for (const Task::Trace* trace : {&good, &bad}) {
        EXPECT_EQ(trace->runs, 1);
        EXPECT_EQ(trace->gone, 1);
        EXPECT_NE(trace->thread, std::this_thread::get_id());
    }
    EXPECT_EQ(events.of("task").size(), 2U);
    ASSERT_EQ(events.of("failure").size(), 1U);
    EXPECT_EQ(events.of("failure")[0]["text"], "thrown by a task");
}

class Observer final : public NC::Observer {
public:
    void onNotification(NC::INotification* notification) override {
        seen.push_back(std::to_string(notification->type()) + ' ' +
                       static_cast<const NC::KelvarVersionRecord*>(notification->data())->text);
        thread = std::this_thread::get_id();
    }
    std::vector<std::string> seen;
    std::thread::id thread;
};

TEST(ModuleNotifications, ReachObserversAsCopies) {
    static Observer& observer = *new Observer; // registered for good
    const lab::Events events;
    auto* center =
        lab::bind<NC::INotificationCenter* (*)()>(L"XNSetting.dll", "GetNotificationCenter")();
    center->registerObserver(&observer);
    NC::KelvarVersionRecord record;
    std::strcpy(record.text, "1.2");
    center->post(NC::kelvarVersionType, &record, sizeof record);
    std::strcpy(record.text, "overwritten");
    ASSERT_TRUE(lab::eventually([] { return isIdle(L"XNSetting.dll"); }));
    EXPECT_EQ(observer.seen, std::vector<std::string>{"14 1.2"});
    EXPECT_NE(observer.thread, std::this_thread::get_id());
    const nlohmann::json event = events.of("notification").at(0);
    EXPECT_EQ(event["size"], 132);
    EXPECT_EQ(event["hex"].get<std::string>().substr(0, 16), "00000000312e3200");
    EXPECT_TRUE(events.of("failure").empty());
    center->post(NC::kelvarVersionType, &record, sizeof record - 1);
    EXPECT_EQ(events.of("failure").size(), 1U);
    ASSERT_TRUE(lab::eventually([] { return isIdle(L"XNSetting.dll"); }));
}

TEST(RunWatch, CountsRunsOnTheThreadThatBeganThem) {
    RunWatch watch;
    watch.line("update plugin, queue, run ... ");
    watch.line("update plugin, queue, run ... ");
    watch.line("update plugin, kelvar, task fetch, check ... ");
    std::thread([&] { watch.line("update plugin, queue, run end. "); }).join();
    EXPECT_EQ(watch.begunRuns(), 1);
    EXPECT_EQ(watch.endedRuns(), 0);
    EXPECT_FALSE(watch.idle());
    watch.line("update plugin, queue, run end. ");
    EXPECT_EQ(watch.endedRuns(), 1);
    EXPECT_TRUE(watch.idle());
    watch.line("update plugin, queue, run ... ");
    watch.line("update plugin, other, task run, check. ");
    EXPECT_TRUE(watch.idle());
}

} // namespace
