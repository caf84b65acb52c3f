#include <gtest/gtest.h>

#include <thread>

#include "support/fakehost.h"
#include "support/immortal.h"
#include "xevent.h"
#include "xtaskqueue.h"
#include "xupdate.h"

namespace {

/// A step that does what the test says.
class Step : public XTaskBase {
public:
    using XTaskBase::check;
    using Body = std::function<void(Step&, FinishCallback)>;

    explicit Step(Body what) : body(std::move(what)) {}
    void check(FinishCallback finish) override {
        thread = std::this_thread::get_id();
        entered.set();
        body(*this, std::move(finish));
    }
    void goOn(FinishCallback finish) { XTaskBase::check(std::move(finish)); }
    bool stoppedNow() const { return isStopped(); }

    Event entered{Event::Reset::manual};
    std::thread::id thread;

private:
    Body body;
};

std::shared_ptr<Step> step(Step::Body body) {
    return std::make_shared<Step>(std::move(body));
}
std::shared_ptr<Step> endsWith(bool succ) {
    return step([succ](Step&, const FinishCallback& finish) { finish(succ); });
}
std::shared_ptr<Step> goesOn() {
    return step([](Step& self, FinishCallback finish) { self.goOn(std::move(finish)); });
}

/// A step that keeps its callback until the test calls it.
class Held : public Step {
public:
    Held()
        : Step([this](Step&, FinishCallback finish) {
              callback = std::move(finish);
              held.set();
          }) {}
    void finish(bool succ) {
        held.wait();
        FinishCallback call = callback; // a copy: the chain may go in the call
        call(succ);
    }

private:
    FinishCallback callback;
    Event held{Event::Reset::manual};
};

constexpr const char* runEnd = "update plugin, queue, run end.";
constexpr const char* ignored = "update plugin, queue, has task, ignore";

class QueueTest : public testing::Test {
protected:
    FakeHost host;
    XTaskQueue& queue = immortal<XTaskQueue>();
};

TEST_F(QueueTest, RunsTheChainOnAThreadOfItsOwnAndIsFreeAfterwards) {
    const auto head = goesOn();
    const auto last = endsWith(true);
    EXPECT_EQ(head->setNext(last), last);
    EXPECT_EQ(queue.addTask(head), 0);
    host.awaitLog(runEnd);
    EXPECT_NE(head->thread, std::this_thread::get_id());
    EXPECT_EQ(last->thread, head->thread);
    EXPECT_TRUE(host.logged("update plugin, queue, task finished, succ: 1 "));
    EXPECT_EQ(queue.addTask(endsWith(true)), 0);
    host.awaitLog(runEnd, 2);
    EXPECT_EQ(host.count(ignored), 0U);
}

TEST_F(QueueTest, AFailingStepEndsTheChain) {
    const auto head = endsWith(false);
    const auto next = endsWith(true);
    head->setNext(next);
    queue.addTask(head);
    host.awaitLog(runEnd);
    EXPECT_EQ(next->thread, std::thread::id());
    EXPECT_TRUE(host.logged("update plugin, queue, task finished, succ: 0 "));
}

TEST_F(QueueTest, DropsAChainAfter100MillisecondsWhileOneRuns) {
    const auto running = std::make_shared<Held>();
    queue.addTask(running);
    running->entered.wait();
    fake::setWaits(fake::Waits::manual);
    const auto dropped = endsWith(true);
    std::thread adder([&] { EXPECT_EQ(queue.addTask(dropped), 1); });
    fake::awaitWaiters(1);
    fake::advance(99);
    EXPECT_EQ(host.count(ignored), 0U);
    fake::advance(1);
    adder.join();
    EXPECT_EQ(host.count(ignored), 1U);
    EXPECT_EQ(dropped->thread, std::thread::id());
    EXPECT_EQ(dropped.use_count(), 1);
    running->finish(true);
    host.awaitLog(runEnd);
}

TEST_F(QueueTest, AChainThatNeverFinishesKeepsTheQueueForGood) {
    fake::setWaits(fake::Waits::immediate);
    const auto silent = goesOn(); // no next task: nobody calls finish
    queue.addTask(silent);
    silent->entered.wait();
    EXPECT_EQ(queue.addTask(endsWith(true)), 1);
    EXPECT_EQ(queue.addTask(endsWith(true)), 1);
}

TEST_F(QueueTest, StopMarksTheChainAndFreesTheQueueWhileTheChainGoesOn) {
    const auto old = std::make_shared<Held>();
    const auto oldNext = goesOn();
    old->setNext(oldNext);
    queue.addTask(old);
    old->entered.wait();
    EXPECT_EQ(queue.stop(), 0);
    EXPECT_TRUE(old->stoppedNow());
    EXPECT_TRUE(oldNext->stoppedNow());

    const auto newer = std::make_shared<Held>();
    EXPECT_EQ(queue.addTask(newer), 0);
    newer->entered.wait();
    // The old chain's end clears what belongs to the new run: the queue counts as idle.
    old->finish(false);
    host.awaitLog(runEnd);
    EXPECT_EQ(queue.addTask(endsWith(true)), 0);
    host.awaitLog(runEnd, 2);
    EXPECT_FALSE(newer->stoppedNow());
    newer->finish(true);
    host.awaitLog(runEnd, 3);
}

TEST_F(QueueTest, ASecondAndALateFinishHarmNothing) {
    FinishCallback kept;
    queue.addTask(step([&kept](Step&, const FinishCallback& finish) {
        kept = finish;
        finish(true);
        finish(false);
    }));
    host.awaitLog(runEnd);
    kept(true);
    EXPECT_EQ(host.count("task finished"), 3U);
    queue.addTask(endsWith(true));
    host.awaitLog(runEnd, 2);
}

TEST(ChannelTest, CanCheckNeedsAllThreeStates) {
    FakeHost host;
    XUpdate channel;
    EXPECT_TRUE(channel.canCheck());
    for (FakeUserState* part :
         {&host.user.tokenPart, &host.user.devicePart, &host.user.servicePart}) {
        part->valid = false;
        EXPECT_FALSE(channel.canCheck());
        part->valid = true;
        part->present = false;
        EXPECT_FALSE(channel.canCheck());
        part->present = true;
    }
    host.without(L"xnuser.dll");
    EXPECT_FALSE(channel.canCheck());
    EXPECT_TRUE(host.log().empty());
}

} // namespace
