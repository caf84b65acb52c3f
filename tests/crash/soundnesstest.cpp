#include <gtest/gtest.h>

#include <stdexcept>

#include "crash/cancelsweep.h"
#include "crash/evidence.h"
#include "crash/healthytrial.h"
#include "crash/sweep.h"
#include "host/settings.h"

// Whether a sweep is worth anything: what it compares with, what it counts, what it breaks.

namespace {

using namespace crash;

/// A packet that places nothing would make every break look recovered.
TEST(CrashSoundness, ComparesWithNoMachineThatIsNotSound) {
    const Packet packet = packetOfAll();
    const Trial good = healthyTrial(packet);
    const Baseline sound{good.sessions.front(), good.wantedPrograms, good.end, {}};
    EXPECT_TRUE(judgeUndisturbed(packet, sound).empty());
    std::vector<Baseline> spoilt(8, sound);
    spoilt[0].first.end = End::exception;
    spoilt[1].end.files[plain] = "p1";
    spoilt[2].end.stored.versions[versionKey] = newVersion;
    spoilt[3].end.stored.versions.erase(virusLibKey);
    spoilt[4].end.stored.versions.erase(fresh);
    spoilt[5].end.fileList->at(fresh).back() = '0'; // its size
    spoilt[6].end.fileList->at(busy) = formerEntry(targetOf(packet, busy));
    spoilt[6].first.log = {std::string("set peeding :x\\") + busy}; // which excuses its size
    spoilt[7].programs.clear();
    for (const Baseline& baseline : spoilt) {
        EXPECT_EQ(judgeUndisturbed(packet, baseline).size(), 1U) << &baseline - spoilt.data();
    }
}

TEST(CrashSoundness, CountsTheRunsUntilATargetIsRight) {
    const Packet packet = packetOfAll();
    Trial trial = healthyTrial(packet);
    trial.later = {{1, trial.end}, {2, trial.end}, {3, trial.end}};
    EXPECT_EQ(runsUntilWhole(trial), 0U);
    trial.later[1].stands.files[plain] = "p1";
    EXPECT_EQ(runsUntilWhole(trial), 3U);
    trial.later[2].stands.files[plain] = "p1";
    EXPECT_EQ(runsUntilWhole(trial), std::nullopt);
}

TEST(CrashSoundness, SeesACancelThatDoesNothing) {
    const auto findings = [](int status, std::vector<std::string> programs, const char* line) {
        Snapshot at;
        at.stored.texts[settingkeys::upgrade] = "{\"status\":" + std::to_string(status) + "}";
        return judgeCancel(at, {.programs = std::move(programs), .log = {line}}).size();
    };
    constexpr const char* stopped = "update plugin, download task, perform err: 23";
    EXPECT_EQ(findings(6, {}, stopped), 0U);
    EXPECT_EQ(findings(4, {}, stopped), 1U);
    EXPECT_EQ(findings(6, {"setup.exe"}, stopped), 1U);
    EXPECT_EQ(findings(6, {}, "update plugin, queue, run end."), 1U);
}

/// Rows that nobody tried must not pass as good ones.
TEST(CrashSoundness, MissesNoRow) {
    const std::string machine = "[1,1,[]]\n";
    const std::string row = "[1,0,0,\"a\",[],1]\n"; // eight of one step, and one of a look-up
    std::string rows;
    for (int i = 0; i < 8; ++i) {
        rows += row;
    }
    const std::string whole = machine + rows + row;
    EXPECT_EQ(rowsOf({whole}).size(), 9U);
    EXPECT_EQ(rowsOf({whole, machine}).size(), 9U);
    EXPECT_THROW(rowsOf({machine + rows}), std::runtime_error);
    EXPECT_THROW(rowsOf({whole, "[2,1,[]]\n"}), std::runtime_error);
    EXPECT_THROW(rowsOf({"[1,1,[\"a.dll is not as the packet has it\"]]\n" + rows + row}),
                 std::runtime_error);
}

} // namespace
