#include "hostile/faultmatrix.h"

#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <nlohmann/json.hpp>
#include <numeric>
#include <optional>
#include <ostream>
#include <stdexcept>

#include "hostile/surroundings.h"
#include "sandbox/platform/childprocess.h"

namespace hostile {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

/// The tests in parts that run beside each other, as they wait more than they work.
class Parts {
public:
    static constexpr int count = 2;

    explicit Parts(const fs::path& tests) : program(tests) {
        ::setenv("GTEST_TOTAL_SHARDS", std::to_string(count).c_str(), 1);
        for (int i = 0; i < count; ++i) {
            ::setenv("GTEST_SHARD_INDEX", std::to_string(i).c_str(), 1);
            parts.push_back(sandbox::ChildProcess::start(
                program,
                {"--gtest_filter=Faults/FaultMatrix.*",
                 "--gtest_output=json:" + reportOf(i).string()},
                place.folder(), place.folder() / ("output" + std::to_string(i))));
        }
        ::unsetenv("GTEST_TOTAL_SHARDS");
        ::unsetenv("GTEST_SHARD_INDEX");
    }

    /// Not before they have ended, as they work in the folder. Tests that are broken off would
    /// leave their hosts behind.
    ~Parts() {
        for (int i = 0; i < count; ++i) {
            wait(i);
        }
    }

    Parts(const Parts&) = delete;
    Parts& operator=(const Parts&) = delete;

    /// Whether no test of that part has failed.
    bool wait(int part) {
        auto& process = parts.at(static_cast<std::size_t>(part));
        return process && process->wait() == 0;
    }

    /// Its own report of itself.
    Json report(int part) const {
        std::ifstream stream(reportOf(part));
        if (!stream) {
            throw std::runtime_error("no report comes from " + program.string());
        }
        return Json::parse(stream);
    }

private:
    fs::path reportOf(int part) const {
        return place.folder() / ("report" + std::to_string(part) + ".json");
    }

    const fs::path program;
    const Surroundings place;
    std::vector<std::optional<sandbox::ChildProcess>> parts;
};

void takeTest(FaultMatrix& matrix, const Json& test) {
    const std::string name = test.at("name");
    const std::string on = name.substr(name.find('/') + 1);
    matrix.on.push_back(on);
    for (const auto& [key, value] : test.items()) {
        // What a test records of a cell, beside what is said of every test.
        if (std::isupper(static_cast<unsigned char>(key[0])) != 0) {
            matrix.cells[key][on] = value.get<std::string>();
        }
    }
    for (const Json& failure : test.value("failures", Json::array())) {
        matrix.faults.push_back(on + ": " + failure.value("failure", ""));
    }
}

} // namespace

FaultMatrix runFaultMatrix(const fs::path& tests, std::size_t cells) {
    FaultMatrix matrix;
    Parts parts(tests);
    bool good = true;
    for (int i = 0; i < Parts::count; ++i) {
        good = parts.wait(i) && good;
        const Json report = parts.report(i);
        for (const Json& suite : report.at("testsuites")) {
            for (const Json& test : suite.at("testsuite")) {
                takeTest(matrix, test);
            }
        }
    }
    if (const std::size_t found = cellCount(matrix); found != cells) {
        matrix.faults.push_back("the tests have " + std::to_string(found) + " cells, and not " +
                                std::to_string(cells));
    }
    matrix.isWhole = good && matrix.faults.empty();
    return matrix;
}

std::size_t cellCount(const FaultMatrix& matrix) {
    return std::accumulate(
        matrix.cells.begin(), matrix.cells.end(), std::size_t{0},
        [](std::size_t sum, const auto& row) { return sum + row.second.size(); });
}

void print(std::ostream& out, const FaultMatrix& matrix) {
    constexpr int nameWidth = 18;
    constexpr int cellWidth = 8;
    out << std::left;
    for (std::size_t i = 0; i < matrix.on.size(); ++i) {
        out << "  " << i + 1 << " " << matrix.on[i] << "\n";
    }
    out << std::setw(nameWidth) << "";
    for (std::size_t i = 0; i < matrix.on.size(); ++i) {
        out << std::setw(cellWidth) << i + 1;
    }
    out << "\n";
    for (const auto& [fault, cells] : matrix.cells) {
        out << std::setw(nameWidth) << fault;
        for (const std::string& on : matrix.on) {
            const auto cell = cells.find(on);
            out << std::setw(cellWidth) << (cell == cells.end() ? "" : cell->second);
        }
        out << "\n";
    }
    out << cellCount(matrix)
        << " cells. held: every file was the old or the new one. unseen: a data file "
        << "that nothing tests\nwas placed as it came. throws: the parser's exception left the "
        << "answer's callback, as it has to.\n";
    for (const std::string& fault : matrix.faults) {
        out << "FAULT " << fault << "\n";
    }
}

} // namespace hostile
