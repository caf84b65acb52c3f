#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "crash/cancelsweep.h"
#include "crash/table.h"
#include "host/settings.h"

namespace {

using namespace crash;

/// What all the others are compared with.
TEST(CrashSweep, AnUndisturbedMachineComesToItsEnd) {
    for (const Packet& packet : {wholePacket(), refusedPacket(), smallPacket()}) {
        Machine machine(packet);
        for (const Finding& finding : undisturbed(machine).findings) {
            ADD_FAILURE() << packet.name << ": " << finding.what;
        }
    }
}

std::string faultsIn(const std::vector<Row>& rows) {
    std::ostringstream text;
    printRows(text, rows, false);
    return text.str();
}

/// A part of what `./dev crash-test` goes through, with each disturbance.
TEST(CrashSweep, LosesNothingThatNeedNotBeLost) {
    constexpr std::size_t stride = 13;
    const Packet packet = smallPacket();
    Machine machine(packet);
    const Baseline baseline = undisturbed(machine);
    ASSERT_TRUE(baseline.findings.empty());
    const std::vector<Row> rows = sweep(machine, baseline, 1, stride);
    const auto part = [](std::size_t all) {
        return (all + stride - 1) / stride;
    };
    EXPECT_EQ(rows.size(),
              8 * part(baseline.first.steps.size()) + part(baseline.first.storeLookups));
    EXPECT_EQ(faultsIn(rows), "");
}

/// The first such operation of an undisturbed run, counted from 1; 0 when there is none.
std::size_t placeOf(const Baseline& baseline, Operation operation, const std::string& part) {
    const auto& steps = baseline.first.steps;
    const auto step = std::find_if(steps.begin(), steps.end(), [&](const Step& tested) {
        return tested.operation == operation && tested.what.find(part) != std::string::npos;
    });
    return step == steps.end() ? 0 : static_cast<std::size_t>(step - steps.begin()) + 1;
}

/// The losses that the runbook tells of come where it says, and nowhere else.
TEST(CrashSweep, NamesWhatIsLost) {
    const Packet packet = smallPacket();
    Machine machine(packet);
    const Baseline baseline = undisturbed(machine);
    const struct {
        Operation operation;
        const char* what; ///< a part of it; the first such operation is disturbed
        Disturbance disturbance;
        Outcome outcome;
        std::optional<Loss> loss;
    } rows[] = {
        {Operation::storeSetting, settingkeys::kelvarTempFileList, Disturbance::losesOpen,
         Outcome::loss, Loss::settingCut},
        {Operation::storeSetting, settingkeys::kelvarTempFileList, Disturbance::fails,
         Outcome::recovered, std::nullopt},
        {Operation::openToWrite, "filelist.xml", Disturbance::diesAfter, Outcome::loss,
         Loss::fileListCut},
        {Operation::openToWrite, "filelist.xml", Disturbance::diesBefore, Outcome::loss,
         Loss::unrecorded},
        {Operation::openToWrite, "filelist.xml", Disturbance::fails, Outcome::loss,
         Loss::unrecorded},
        {Operation::openToWrite, "filelist.xml", Disturbance::fullDisk, Outcome::loss,
         Loss::fileListCut},
        {Operation::move, "bin\\plain.dll > ", Disturbance::diesBefore, Outcome::recovered,
         std::nullopt},
        {Operation::openToWrite, "update\\", Disturbance::losesAll, Outcome::recovered,
         std::nullopt},
        {Operation::storeVersion, versionKey, Disturbance::losesAll, Outcome::loss,
         Loss::notForced},
        {Operation::storeVersion, versionKey, Disturbance::fails, Outcome::oldKept,
         Loss::scheduledTwice},
    };
    for (const auto& row : rows) {
        const std::size_t at = placeOf(baseline, row.operation, row.what);
        ASSERT_GT(at, 0U) << row.what;
        const Row tried = tryOne(machine, baseline, row.disturbance, at);
        EXPECT_EQ(outcomeOf(tried.findings), row.outcome) << row.what;
        const auto& findings = tried.findings;
        EXPECT_TRUE(!row.loss ||
                    std::any_of(findings.begin(), findings.end(),
                                [&](const Finding& finding) { return finding.loss == row.loss; }))
            << row.what;
    }
    // There a look-up is disturbed, and the operation of that number has nothing to do with it.
    EXPECT_EQ(tryOne(machine, baseline, Disturbance::storeIsGone, 1).step.what, "");
}

/// What the runbook tells to do where a file stays as it must not.
TEST(CrashSweep, AskingAgainBringsWhatWasLost) {
    const Packet packet = smallPacket();
    Machine machine(packet);
    const Baseline baseline = undisturbed(machine);
    const std::size_t at = placeOf(baseline, Operation::storeVersion, versionKey);
    const auto asIsWanted = [&] {
        const Snapshot now = machine.look();
        return std::all_of(packet.targets.begin(), packet.targets.end(), [&](const Target& target) {
            const auto file = now.files.find(target.path);
            return file != now.files.end() && file->second == target.after;
        });
    };
    for (const Disturbance disturbance : {Disturbance::fails, Disturbance::losesAll}) {
        tryOne(machine, baseline, disturbance, at);
        EXPECT_FALSE(asIsWanted());
        Stored stored = machine.stored();
        stored.versions[versionKey] = oldVersion;
        machine.store(stored);
        machine.run();
        EXPECT_TRUE(asIsWanted());
    }
}

/// Calls within the platform layer are operations like any other.
TEST(CrashSweep, CountsWhatThePlatformLayerDoesByItself) {
    const Packet packet = smallPacket();
    Machine machine(packet);
    const std::size_t at = placeOf(undisturbed(machine), Operation::write, "update\\packed.dll");
    ASSERT_GT(at, 0U);
    machine.layOut();
    const Session session = machine.run({.disturbance = Disturbance::fullDisk, .at = at});
    EXPECT_TRUE(std::any_of(session.steps.begin(), session.steps.end(), [](const Step& step) {
        return step.operation == Operation::remove && step.what.ends_with("\\packed.dll");
    })) << "the half member was not removed";
}

/// The power takes the programs with it, also where nothing waits for the restart.
TEST(CrashSweep, ARestartEndsThePrograms) {
    const Packet packet = smallPacket();
    Machine machine(packet);
    machine.layOut();
    machine.restart();
    machine.run();
    EXPECT_EQ(machine.look().files.at("bin\\used.dll"), packet.targets.back().after);
}

TEST(CrashSweep, ACancelOfAPackageLosesNothing) {
    const std::vector<Row> rows = cancelSweep();
    EXPECT_GT(rows.size(), 20U);
    EXPECT_EQ(faultsIn(rows), "");
}

} // namespace
