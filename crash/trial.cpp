#include <algorithm>

#include "crash/explain.h"
#include "crash/sweep.h"

// One machine from its first session to its end.

namespace crash {

namespace {

std::vector<std::string> programsOf(const std::vector<Session>& sessions) {
    std::vector<std::string> all;
    for (const Session& session : sessions) {
        all.insert(all.end(), session.programs.begin(), session.programs.end());
    }
    return all;
}

/// Runs and restarts until nothing more can come, and once more.
void settle(Machine& machine, Trial& trial) {
    constexpr std::size_t enough = 3;
    for (std::size_t run = 1; run <= enough; ++run) {
        trial.sessions.push_back(machine.run());
        trial.later.push_back({run, machine.look()});
        const Stored stored = machine.stored();
        if (const auto damaged = damagedLists(stored); !damaged.empty()) {
            Stored cleared = stored; // as the runbook tells
            for (const std::string& key : damaged) {
                cleared.texts[key].clear();
            }
            machine.store(cleared);
            trial.sessions.push_back(machine.run());
            trial.later.push_back({run, machine.look()});
        }
        machine.restartIfAsked();
        trial.later.push_back({run, machine.look()});
    }
    trial.end = trial.later.back().stands;
    trial.sessions.push_back(machine.run());
    machine.restartIfAsked();
    trial.again = machine.look();
    trial.notMoved = machine.notMoved();
}

/// A gate that the clock has shut: a session behind it touches nothing.
void waitForTheClock(Machine& machine, Trial& trial, std::vector<Finding>& findings) {
    const std::uint32_t tick = machine.tick;
    machine.tick = 0;
    trial.sessions.push_back(machine.run());
    machine.tick = tick;
    const std::vector<std::string>& log = trial.sessions.back().log;
    if (std::none_of(log.begin(), log.end(), [](const std::string& line) {
            return line.find("check times fail") != std::string::npos;
        })) {
        findings.push_back({"the gate is open although the clock was set back", std::nullopt});
    }
    if (machine.look().files != trial.broken.files) {
        findings.push_back({"a run behind a shut gate changed a file", std::nullopt});
    }
}

void disturb(Machine& machine, Trial& trial) {
    if (trial.disturbance == Disturbance::otherHost) {
        const Machine::Pair both = machine.runBeside(trial.at);
        trial.sessions = {both.first, both.second};
    } else {
        trial.sessions = {machine.run({.disturbance = trial.disturbance, .at = trial.at})};
    }
    const auto& made = trial.sessions.front().steps;
    if (trial.disturbance != Disturbance::storeIsGone && made.size() >= trial.at) {
        trial.step = made[trial.at - 1];
    }
    trial.broken = machine.look();
}

constexpr const char* notAsOffered = " is not as the packet has it";

/// Whether filelist.xml and, for data, the version store tell of the new file.
bool isRecorded(const Trial& alone, const Snapshot& end, const Target& target) {
    const std::string entry = entryIn(end, target.path);
    const bool isSized = entry.ends_with(" " + std::to_string(target.after.size()));
    return entry != formerEntry(target) && isPossibleEntry(alone.packet, target, entry) &&
           (isSized || hasWaited(alone, target)) &&
           (target.isImage || versionIn(end.stored, target.path) == newVersion);
}

} // namespace

std::vector<Finding> judgeUndisturbed(const Packet& packet, const Baseline& baseline) {
    std::vector<Finding> findings;
    const Session& first = baseline.first;
    const Snapshot& end = baseline.end;
    const auto demand = [&](bool isGood, const std::string& what) {
        if (!isGood) {
            findings.push_back({"undisturbed, " + what, std::nullopt});
        }
    };
    demand(first.end == End::itself && !first.steps.empty(),
           "the first run does not come to its end");
    const Trial alone{.packet = packet, .disturbance = Disturbance::none, .sessions = {first}};
    bool isWhole = true;
    for (const Target& target : packet.targets) {
        const bool stays = isToStay(packet, target);
        isWhole = isWhole && !stays;
        // What a refused group has left to the restart is carried out all the same.
        const Bytes wanted =
            stays && !hasWaited(alone, target) ? bytesBefore(target) : Bytes(target.after);
        demand(bytesAt(end, target.path) == wanted, target.path + notAsOffered);
        const auto& programs = baseline.programs;
        const auto starts = std::count(programs.begin(), programs.end(), target.program);
        demand(target.program.empty() || (starts > 0) != stays, target.program + notAsOffered);
        if (!stays) {
            demand(isRecorded(alone, end, target), "the record of " + target.path + notAsOffered);
        }
    }
    demand(versionIn(end.stored, versionKey) == (isWhole ? newVersion : oldVersion),
           std::string(versionKey) + notAsOffered);
    const auto& modules = packet.offer.modules;
    demand(std::none_of(modules.begin(), modules.end(),
                        [](const auto& module) { return module.id == virusLibModule; }) ||
               versionIn(end.stored, virusLibKey) == newVirusLibVersion,
           std::string(virusLibKey) + notAsOffered);
    return findings;
}

Baseline undisturbed(Machine& machine) {
    machine.layOut();
    Trial trial{.packet = machine.packet(), .disturbance = Disturbance::none};
    trial.sessions = {machine.run()};
    trial.broken = machine.look();
    machine.restartIfAsked();
    settle(machine, trial);
    trial.wanted = trial.end;
    trial.wantedPrograms = programsOf(trial.sessions);
    Baseline baseline{trial.sessions.front(), trial.wantedPrograms, trial.end, {}};
    baseline.findings = judgeUndisturbed(trial.packet, baseline);
    for (Finding& finding : judge(trial)) {
        if (!finding.loss) {
            baseline.findings.push_back(
                {"undisturbed, " + machine.told(std::move(finding.what)), std::nullopt});
        }
    }
    return baseline;
}

Row tryOne(Machine& machine, const Baseline& baseline, Disturbance disturbance, std::size_t at) {
    machine.layOut();
    Trial trial{.packet = machine.packet(),
                .disturbance = disturbance,
                .at = at,
                .wanted = baseline.end,
                .wantedPrograms = baseline.programs};
    disturb(machine, trial);
    std::vector<Finding> findings;
    if (disturbance == Disturbance::clockSetBack) {
        waitForTheClock(machine, trial, findings);
    } else if (disturbance == Disturbance::diesAfter) {
        machine.restartIfAsked();
    } else if (disturbance == Disturbance::losesAll) {
        machine.restart();
    }
    trial.later.push_back({0, machine.look()});
    settle(machine, trial);
    for (Finding& finding : judge(trial)) {
        finding.what = machine.told(finding.what);
        findings.push_back(std::move(finding));
    }
    return {at,
            disturbance,
            {trial.step.operation, machine.told(trial.step.what)},
            findings,
            runsUntilWhole(trial)};
}

} // namespace crash
