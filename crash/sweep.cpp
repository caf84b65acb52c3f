#include "crash/sweep.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <sstream>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

namespace crash {

namespace {

using Json = nlohmann::json;

constexpr std::array ofOperations{Disturbance::fails,        Disturbance::diesBefore,
                                  Disturbance::diesAfter,    Disturbance::losesOpen,
                                  Disturbance::losesAll,     Disturbance::fullDisk,
                                  Disturbance::clockSetBack, Disturbance::otherHost};

Json toJson(const Row& row) {
    Json findings = Json::array();
    for (const Finding& finding : row.findings) {
        findings.push_back(
            Json::array({finding.what, finding.loss ? static_cast<int>(*finding.loss) : -1}));
    }
    return Json::array({row.at, static_cast<int>(row.disturbance),
                        static_cast<int>(row.step.operation), row.step.what, findings,
                        row.runs ? static_cast<int>(*row.runs) : -1});
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
    if (const int runs = json.at(5); runs >= 0) {
        row.runs = static_cast<std::size_t>(runs);
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

/// What one process has to say ahead of its rows.
Json toJson(const Baseline& baseline) {
    Json wrong = Json::array();
    for (const Finding& finding : baseline.findings) {
        wrong.push_back(finding.what);
    }
    return Json::array({baseline.first.steps.size(), baseline.first.storeLookups, wrong});
}

[[noreturn]] void work(const Packet& packet, std::size_t first, std::size_t stride, int output) {
    std::string lines;
    {
        Machine machine(packet);
        const Baseline baseline = undisturbed(machine);
        lines = toJson(baseline).dump() + "\n";
        if (baseline.findings.empty()) {
            for (const Row& row : sweep(machine, baseline, first, stride)) {
                lines += toJson(row).dump() + "\n";
            }
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

std::vector<Row> rowsOf(const std::vector<std::string>& texts) {
    std::vector<Row> rows;
    Json baseline;
    for (const std::string& text : texts) {
        std::istringstream lines(text);
        std::string line;
        std::getline(lines, line);
        const Json ofThis = Json::parse(line);
        if (!ofThis.at(2).empty()) {
            throw std::runtime_error(ofThis.at(2).at(0).get<std::string>());
        }
        if (!baseline.is_null() && ofThis != baseline) {
            throw std::runtime_error("two undisturbed runs have not the same steps");
        }
        baseline = ofThis;
        while (std::getline(lines, line)) {
            rows.push_back(fromJson(Json::parse(line)));
        }
    }
    const std::size_t steps = baseline.at(0);
    const std::size_t lookups = baseline.at(1);
    if (rows.size() != steps * ofOperations.size() + lookups) {
        throw std::runtime_error(std::to_string(rows.size()) + " breaks of " +
                                 std::to_string(steps) + " steps and " + std::to_string(lookups) +
                                 " look-ups");
    }
    return rows;
}

std::vector<Row> sweep(const Packet& packet, std::size_t workers) {
    std::vector<int> outputs;
    for (std::size_t i = 0; i < workers; ++i) {
        std::array<int, 2> pipe{};
        if (::pipe(pipe.data()) != 0) {
            throw std::runtime_error("no pipe to a process of the sweep");
        }
        if (::fork() == 0) {
            work(packet, i + 1, workers, pipe[1]);
        }
        ::close(pipe[1]);
        outputs.push_back(pipe[0]);
    }
    std::vector<std::string> texts;
    for (const int output : outputs) {
        texts.push_back(readAll(output));
        ::close(output);
    }
    bool allWorked = true;
    for (std::size_t i = 0; i < workers; ++i) {
        int status = 0;
        allWorked = ::wait(&status) > 0 && status == 0 && allWorked;
    }
    if (!allWorked) {
        throw std::runtime_error("a process of the sweep has failed");
    }
    std::vector<Row> rows = rowsOf(texts);
    std::stable_sort(rows.begin(), rows.end(), [](const Row& a, const Row& b) {
        return std::pair(a.disturbance == Disturbance::storeIsGone, a.at) <
               std::pair(b.disturbance == Disturbance::storeIsGone, b.at);
    });
    return rows;
}

} // namespace crash
