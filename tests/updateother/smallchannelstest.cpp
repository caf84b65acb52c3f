#include <gtest/gtest.h>

#include "sandbox/materials/pefile.h"
#include "support/fakehost.h"
#include "support/immortal.h"
#include "updateother/task/xtaskothercondition.h"
#include "updateother/task/xtaskotherrun.h"
#include "updateother/xupdateother.h"
#include "updatestatistic/xupdatestatistic.h"

namespace {

TEST(OtherChannel, TheGateOpensAbove600AndForTheSameTaskThenAbove1800) {
    FakeHost host;
    fake::setTick(1000);
    EXPECT_EQ(immortal<XUpdateOther>().init(), 0);
    XTaskOtherCondition task;
    std::string gate;
    for (const std::uint32_t tick : {1600U, 1601U, 3401U, 3402U, ~0U, 9U}) { // begins anew at last
        fake::setTick(tick);
        gate += "+"; // open, as a task without a next one is silent
        task.check([&gate](bool succ) { gate.back() = succ ? '?' : '-'; });
    }
    EXPECT_EQ(gate, "-+-++-");
    EXPECT_EQ(host.count("task condition, can't check, so ignore"), 6U) << "open or shut";
}

TEST(OtherChannel, TheFirstRunPastTheGateIsTheOnlyOne) {
    FakeHost host;
    XTaskOtherRun().check([](bool) { ADD_FAILURE() << "finish ends the hang"; });
    EXPECT_EQ(host.startedPrograms.at(0).first, L"orvdefender.exe");
    EXPECT_EQ(host.startedPrograms.at(0).second, L"--install");
    host.without(L"xnbase.dll", "runProcess"); // the chain hangs without it too
    XUpdateOther& channel = immortal<XUpdateOther>();
    channel.init();
    EXPECT_EQ(channel.checkUpdate(), 0);
    host.awaitLog("update plugin, queue, run end."); // the gate is shut
    fake::advance(601);
    host.user.devicePart.valid = false;
    EXPECT_EQ(channel.checkUpdate(), -1);
    host.user.devicePart.valid = true;
    fake::setWaits(fake::Waits::immediate);
    for (int tick = 0; tick < 3; ++tick) {
        EXPECT_EQ(channel.checkUpdate(), 0);
        host.awaitLog("update plugin, other, task run, check.", 2);
        fake::advance(5000);
    }
    EXPECT_EQ(host.count("update plugin, queue, has task, ignore"), 2U);
}

TEST(StatisticChannel, TellsAtMostOnceIn14400MillisecondsThatTheClientRuns) {
    FakeHost host;
    host.has("trayhost.exe", materials::buildPeFile({.version = {9, 8, 7, 6}}));
    host.has("OrvSecurityver.dll", materials::buildPeFile({.version = {1, 2, 3, 4}}));
    XUpdateStatistic channel;
    fake::setTick(1000);
    channel.init();
    const auto sentAt = [&](std::uint32_t tick) {
        fake::setTick(tick);
        channel.checkUpdate();
        return host.events.size();
    };
    EXPECT_EQ(sentAt(15'399), 0U);
    EXPECT_EQ(sentAt(15'400), 1U);
    EXPECT_EQ(host.events[0], "trayhost.exe run 1.2.3.4 9.8.7.6 1 - - ");
    host.user.tokenPart.valid = false;
    EXPECT_EQ(sentAt(29'799), 1U);
    EXPECT_EQ(sentAt(29'800), 2U);
    EXPECT_EQ(host.events[1], "trayhost.exe run 1.2.3.4 9.8.7.6 2 - - ");
    host.without(L"xnuser.dll");
    EXPECT_EQ(sentAt(50'000), 3U);
    EXPECT_EQ(host.events[2], host.events[1]);
    host.without(L"xnbase.dll", "event");
    for (const std::uint32_t tick : {70'000U, 70'001U, 20'000U}) { // lost, too early, begun anew
        EXPECT_EQ(sentAt(tick), 3U);
    }
    EXPECT_EQ(host.count("update plugin, statistic, time ignore ... "), 4U);
}

} // namespace
