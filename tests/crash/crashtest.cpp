#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "crash/cancelsweep.h"
#include "crash/table.h"
#include "host/settings.h"

namespace {

using namespace crash;

constexpr const char* plain = "bin\\plain.dll";

Trial healthyTrial(Machine& machine, const Baseline& baseline) {
    return {.packet = machine.packet(),
            .disturbance = Disturbance::fails,
            .broken = baseline.end,
            .end = baseline.end,
            .wanted = baseline.end,
            .sessions = {{.end = End::itself, .programs = baseline.programs}},
            .wantedPrograms = baseline.programs};
}

TEST(CrashJudge, FindsEveryPlantedFault) {
    const Packet packet = smallPacket();
    Machine machine(packet);
    const Baseline baseline = undisturbed(machine);
    const auto& waiting = settingkeys::kelvarPaddingFileList;
    const struct {
        const char* told;
        std::function<void(Trial&)> plant;
    } rows[] = {
        {"bin\\plain.dll holds neither the old nor the new bytes at the break",
         [](Trial& trial) {
             trial.broken.files[plain] = "other";
         }},
        {"bin\\plain.dll holds neither the old nor the new bytes at the break",
         [](Trial& trial) {
             trial.broken.files.erase(plain);
         }},
        {"bin\\plain.dll holds other bytes in the end",
         [](Trial& trial) {
             trial.end.files[plain] = "other";
         }},
        {"bin\\plain.dll is the old one in the end",
         [&](Trial& trial) {
             trial.end.files[plain] = packet.targets[0].before;
         }},
        {"bin\\plain.dll is missing in the end",
         [](Trial& trial) {
             trial.end.files.erase(plain);
         }},
        {"trayhost.exe is not as it was",
         [](Trial& trial) {
             trial.end.files.erase("trayhost.exe");
         }},
        {"bin\\foreign.dll stays",
         [](Trial& trial) {
             trial.end.files["bin\\foreign.dll"] = "x";
         }},
        {"bin\\plain.dll has \"1\" in filelist.xml",
         [&](Trial& trial) {
             trial.broken.files[plain] = packet.targets[0].before;
             (*trial.end.fileList)[plain] = "1";
         }},
        {"filelist.xml cannot be read",
         [](Trial& trial) {
             trial.broken.fileList.reset();
         }},
        {"a stored list is no JSON",
         [&](Trial& trial) {
             trial.broken.stored.texts[waiting] = "{\"a\":";
         }},
        {"a stored list is no JSON in the end",
         [&](Trial& trial) {
             trial.end.stored.texts[waiting] = "{\"a\":";
         }},
        {"bin\\used.dll is listed as waiting and nothing is to replace it",
         [&](Trial& trial) {
             trial.end.stored.texts[waiting] = R"({"bin\\used.dll":"\\waits"})";
             trial.end.files["update\\waits"] = "x";
         }},
        {"the system still keeps: a > b",
         [](Trial& trial) {
             trial.end.delayed = {"a > b"};
         }},
        {"bin\\plain.dll has version \"9\" in the store",
         [](Trial& trial) {
             trial.end.stored.versions[plain] = "9";
         }},
        {"plain.exe was never started",
         [&](Trial& trial) {
             trial.broken.files[plain] = packet.targets[0].before;
             trial.sessions.front().programs.clear();
         }},
        {"the host ended in an unforeseen way",
         [](Trial& trial) {
             trial.sessions.front().end = End::exception;
         }},
    };
    EXPECT_TRUE(judge(healthyTrial(machine, baseline)).empty());
    for (const auto& row : rows) {
        Trial trial = healthyTrial(machine, baseline);
        row.plant(trial);
        const std::vector<Finding> findings = judge(trial);
        EXPECT_TRUE(std::any_of(findings.begin(), findings.end(), [&](const Finding& finding) {
            return !finding.loss && finding.what == row.told;
        })) << row.told;
        EXPECT_EQ(outcomeOf(findings), Outcome::fault) << row.told;
    }
}

/// What all the others are compared with.
TEST(CrashSweep, AnUndisturbedMachineComesToItsEnd) {
    for (const Packet& packet : {wholePacket(), refusedPacket(), smallPacket()}) {
        Machine machine(packet);
        const Baseline baseline = undisturbed(machine);
        bool isWhole = true;
        for (const Target& target : packet.targets) {
            // What a refused group has left to the restart is carried out all the same.
            const bool stays = packet.name == "refused" && target.group == "group" &&
                               target.path != "group\\used.dll";
            const auto found = baseline.end.files.find(target.path);
            EXPECT_EQ(found == baseline.end.files.end() ? "" : found->second,
                      stays ? target.before : target.after)
                << target.path;
            isWhole = isWhole && !stays;
        }
        EXPECT_EQ(baseline.end.stored.versions.at(versionKey), isWhole ? newVersion : oldVersion);
        EXPECT_TRUE(baseline.end.delayed.empty());
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
    ASSERT_EQ(baseline.first.end, End::itself);
    const std::vector<Row> rows = sweep(machine, baseline, 1, stride);
    EXPECT_GT(rows.size(), baseline.first.steps.size() / stride);
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

TEST(CrashSweep, ACancelOfAPackageLosesNothing) {
    const std::vector<Row> rows = cancelSweep();
    EXPECT_GT(rows.size(), 20U);
    EXPECT_EQ(faultsIn(rows), "");
}

} // namespace
