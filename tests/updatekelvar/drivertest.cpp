#include <gtest/gtest.h>
#include <utility>

#include "host/settings.h"
#include "support/fakehost.h"
#include "support/immortal.h"
#include "updatekelvar/xupdatekelvar.h"
#include "xrefresher.h"

namespace {

constexpr const char* runEnd = "update plugin, queue, run end.";
constexpr const char* checkUpdate = "update plugin, kelvar, check update ... ";

class DriverTest : public testing::Test {
protected:
    FakeHost host;
    XUpdateKelvar& channel = immortal<XUpdateKelvar>();
};

TEST_F(DriverTest, InitTakesTheTimeAndRegistersNoObserver) {
    fake::setTick(1234);
    EXPECT_EQ(channel.init(), 0);
    EXPECT_EQ(host.settings.number(settingkeys::kelvarLastCheckTime), 1234U);
    EXPECT_TRUE(host.user.observers.empty());
}

TEST_F(DriverTest, AShutGateEndsTheRunWithoutARequest) {
    channel.init();
    EXPECT_EQ(channel.checkUpdate(), 0);
    host.awaitLog(runEnd);
    EXPECT_TRUE(host.logged("update plugin, queue, task finished, succ: 0 "));
    EXPECT_TRUE(host.requests.empty());
    EXPECT_EQ(host.lineWith(checkUpdate).function, "XUpdateKelvar::checkUpdate");
}

TEST_F(DriverTest, AUserEventDrivesTheChannelLikeATick) {
    channel.init();
    fake::advance(301);
    uc::IUserStateObserver& observer = channel;
    observer.event2(nullptr);
    host.awaitLog(runEnd);
    ASSERT_EQ(host.requests.size(), 1U); // the fake platform knows no path
    EXPECT_TRUE(host.logged("task fetch, upgradePacketData nil . "));
    observer.event0(nullptr);
    observer.event3();
    EXPECT_EQ(host.count(checkUpdate), 1U);
}

TEST_F(DriverTest, TheServiceLoopBeatsOnItsOwnEvenInMuteMode) {
    // A process has one loop, which waits by the clock of the test that started it.
    static bool hasBegun = false;
    if (std::exchange(hasBegun, true)) {
        GTEST_SKIP() << "the loop of this process has been seen";
    }
    host.muteMode = 1;
    fake::setWaits(fake::Waits::manual);
    EXPECT_EQ(StartKelvarService(), 0);
    fake::awaitWaiters(1);
    EXPECT_EQ(StartKelvarService(), 0); // finds the loop running
    fake::advance(29'999);
    EXPECT_EQ(host.count(checkUpdate), 0U);
    fake::advance(1);
    host.awaitLog(runEnd, 1);
    fake::awaitWaiters(1);
    fake::advance(299'999);
    EXPECT_EQ(host.count(checkUpdate), 1U);
    fake::advance(1);
    host.awaitLog(runEnd, 2);
    fake::awaitWaiters(1);
    EXPECT_EQ(host.count(checkUpdate), 2U);
}

} // namespace
