#include "crash/sweep.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>

namespace crash {

namespace {

using Json = nlohmann::json;

constexpr std::array ofOperations{Disturbance::fails,        Disturbance::diesBefore,
                                  Disturbance::diesAfter,    Disturbance::losesOpen,
                                  Disturbance::losesAll,     Disturbance::fullDisk,
                                  Disturbance::clockSetBack, Disturbance::otherHost};

/// Runs and restarts until nothing more can come.
void settle(Machine& machine, std::vector<Session>& sessions) {
    constexpr int enough = 3;
    for (int i = 0; i < enough; ++i) {
        sessions.push_back(machine.run());
        const Stored stored = machine.stored();
        if (const auto damaged = damagedLists(stored); !damaged.empty()) {
            Stored cleared = stored; // as the runbook tells
            for (const std::string& key : damaged) {
                cleared.texts[key].clear();
            }
            machine.store(cleared);
            sessions.push_back(machine.run());
        }
        machine.restart();
    }
}

std::vector<std::string> programsOf(const std::vector<Session>& sessions) {
    std::vector<std::string> all;
    for (const Session& session : sessions) {
        all.insert(all.end(), session.programs.begin(), session.programs.end());
    }
    return all;
}

bool comesWithARestart(Disturbance disturbance) {
    return disturbance == Disturbance::diesAfter || disturbance == Disturbance::losesAll;
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

Json toJson(const Row& row) {
    Json findings = Json::array();
    for (const Finding& finding : row.findings) {
        findings.push_back(
            Json::array({finding.what, finding.loss ? static_cast<int>(*finding.loss) : -1}));
    }
    return Json::array({row.at, static_cast<int>(row.disturbance),
                        static_cast<int>(row.step.operation), row.step.what, findings});
}

Row fromJson(const Json& json) {
    Row row{json.at(0).get<std::size_t>(),
            static_cast<Disturbance>(json.at(1).get<int>()),
            {static_cast<Operation>(json.at(2).get<int>()), json.at(3).get<std::string>()}};
    for (const Json& finding : json.at(4)) {
        const int loss = finding.at(1);
        row.findings.push_back({finding.at(0).get<std::string>(),
                                loss < 0 ? std::nullopt : std::optional(static_cast<Loss>(loss))});
    }
    return row;
}

/// Everything that the pipe brings until its other end is closed.
std::string readAll(int descriptor) {
    std::string text;
    std::array<char, 65536> block{};
    for (;;) {
        const ssize_t count = ::read(descriptor, block.data(), block.size());
        if (count <= 0) {
            return text;
        }
        text.append(block.data(), static_cast<std::size_t>(count));
    }
}

[[noreturn]] void work(const Packet& packet, std::size_t first, std::size_t stride, int output) {
    std::string lines;
    {
        Machine machine(packet);
        const Baseline baseline = undisturbed(machine);
        for (const Row& row : sweep(machine, baseline, first, stride)) {
            lines += toJson(row).dump() + "\n";
        }
    }
    for (std::size_t at = 0; at < lines.size();) {
        const ssize_t count = ::write(output, lines.data() + at, lines.size() - at);
        if (count <= 0) {
            ::_exit(EXIT_FAILURE);
        }
        at += static_cast<std::size_t>(count);
    }
    ::_exit(EXIT_SUCCESS);
}

} // namespace

Baseline undisturbed(Machine& machine) {
    machine.layOut();
    std::vector<Session> sessions;
    settle(machine, sessions);
    Baseline baseline{sessions.front(), {}, {}};
    baseline.programs = programsOf(sessions);
    baseline.end = machine.look();
    return baseline;
}

Row tryOne(Machine& machine, const Baseline& baseline, Disturbance disturbance, std::size_t at) {
    machine.layOut();
    Trial trial{.packet = machine.packet(),
                .disturbance = disturbance,
                .wanted = baseline.end,
                .wantedPrograms = baseline.programs};
    if (disturbance == Disturbance::otherHost) {
        const Machine::Pair both = machine.runBeside(at);
        trial.sessions = {both.first, both.second};
    } else {
        trial.sessions = {machine.run({.disturbance = disturbance, .at = at})};
    }
    if (const auto& made = trial.sessions.front().steps; made.size() >= at) {
        trial.step = made[at - 1];
    }
    trial.broken = machine.look();
    std::vector<Finding> findings;
    if (disturbance == Disturbance::clockSetBack) {
        waitForTheClock(machine, trial, findings);
    }
    if (comesWithARestart(disturbance)) {
        machine.restart();
    }
    settle(machine, trial.sessions);
    trial.end = machine.look();
    for (Finding& finding : judge(trial)) {
        finding.what = machine.told(finding.what);
        findings.push_back(std::move(finding));
    }
    return {at, disturbance, {trial.step.operation, machine.told(trial.step.what)}, findings};
}

std::vector<Row> sweep(Machine& machine, const Baseline& baseline, std::size_t first,
                       std::size_t stride) {
    std::vector<Row> rows;
    for (std::size_t at = first; at <= baseline.first.steps.size(); at += stride) {
        for (const Disturbance disturbance : ofOperations) {
            rows.push_back(tryOne(machine, baseline, disturbance, at));
        }
    }
    for (std::size_t at = first; at <= baseline.first.storeLookups; at += stride) {
        rows.push_back(tryOne(machine, baseline, Disturbance::storeIsGone, at));
    }
    return rows;
}

std::vector<Row> sweep(const Packet& packet, std::size_t workers) {
    std::vector<int> outputs;
    for (std::size_t i = 0; i < workers; ++i) {
        std::array<int, 2> pipe{};
        if (::pipe(pipe.data()) != 0) {
            return {};
        }
        if (::fork() == 0) {
            work(packet, i + 1, workers, pipe[1]);
        }
        ::close(pipe[1]);
        outputs.push_back(pipe[0]);
    }
    std::vector<Row> rows;
    for (const int output : outputs) {
        std::istringstream lines(readAll(output));
        for (std::string line; std::getline(lines, line);) {
            rows.push_back(fromJson(Json::parse(line)));
        }
        ::close(output);
    }
    bool allWorked = true;
    for (std::size_t i = 0; i < workers; ++i) {
        int status = 0;
        allWorked = ::wait(&status) > 0 && status == 0 && allWorked;
    }
    std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) {
        return std::pair(a.disturbance == Disturbance::storeIsGone, a.at) <
               std::pair(b.disturbance == Disturbance::storeIsGone, b.at);
    });
    return allWorked ? rows : std::vector<Row>();
}

} // namespace crash
