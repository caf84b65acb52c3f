#include <CLI/CLI.hpp>
#include <chrono>
#include <cstdlib>
#include <iomanip>
#include <iostream>
#include <sys/resource.h>

#include "hostile/badnames.h"
#include "hostile/faultmatrix.h"
#include "hostile/sections.h"
#include "hostile/surroundings.h"

// All that servers can do wrong, in one go. Exit status 1 when one of it did harm.

namespace {

constexpr std::size_t brokenCabinets = 2000; ///< seeds
constexpr std::size_t brokenImages = 3000;
/// Of the fault matrix: each spot with each fault that it can meet. A spot or a fault that gets
/// lost among the tests would be tried no more.
constexpr std::size_t faultCells = 198;
constexpr rlim_t largestFile = 64 << 20; ///< so that a bomb that goes off fills no disk

using Clock = std::chrono::steady_clock;

long secondsSince(Clock::time_point begin) {
    return std::chrono::duration_cast<std::chrono::seconds>(Clock::now() - begin).count();
}

/// Goes through a section and prints it; whether all went well in it.
template <class Section>
bool tell(const char* title, bool verbose, Section section) {
    constexpr int nameWidth = 28;
    constexpr int cellWidth = 11;
    const auto begin = Clock::now();
    const hostile::Tally tally = section();
    std::cout << "\n" << title << " (" << secondsSince(begin) << " s)\n";
    if (verbose) {
        for (const std::string& detail : tally.details) {
            std::cout << "  " << detail << "\n";
        }
    }
    std::cout << std::left << std::setw(nameWidth) << "";
    for (const char* const name : hostile::outcomeNames) {
        std::cout << std::right << std::setw(cellWidth) << name;
    }
    std::cout << "\n";
    for (const auto& [group, counts] : tally.lines) {
        std::cout << std::left << std::setw(nameWidth) << group << std::right;
        for (const std::size_t count : counts) {
            std::cout << std::setw(cellWidth) << count;
        }
        std::cout << "\n";
    }
    for (const std::string& fault : tally.faults) {
        std::cout << "FAULT " << fault << "\n";
    }
    return tally.faults.empty() && !tally.lines.empty();
}

std::set<std::string> hostileNames() {
    std::set<std::string> names{"evil.txt", "evil.cab", hostile::wantedName};
    for (const hostile::BadName& bad : hostile::badNames()) {
        const std::string leaf = bad.name.substr(bad.name.find_last_of("\\/:") + 1);
        if (leaf.find_first_not_of(". ") != std::string::npos) {
            names.insert(leaf);
        }
    }
    return names;
}

/// Materials against the plug-in, with all of the disk around it in sight.
bool tryMaterials(bool verbose) {
    const hostile::WideWatch watch(hostileNames());
    bool good = true;
    {
        const hostile::Surroundings surroundings;
        good = tell("Cabinets", verbose, [] { return hostile::tryCabinets(); }) && good;
        good = tell("Cabinets broken at random", verbose,
                    [] { return hostile::tryBrokenCabinets(brokenCabinets); }) &&
               good;
        good = tell("Images broken at random", verbose,
                    [] { return hostile::tryBrokenImages(brokenImages); }) &&
               good;
        good = tell("Names that the platform tells", verbose, [] { return hostile::tryNames(); }) &&
               good;
    }
    for (const std::string& finding : watch.findings()) {
        std::cout << "FAULT outside of all trials: " << finding << "\n";
        good = false;
    }
    return good;
}

/// Requests and transfers against faults of the servers.
bool tryFaults() {
    const auto begin = Clock::now();
    const hostile::FaultMatrix matrix = hostile::runFaultMatrix(E2E_TESTS, faultCells);
    std::cout << "Requests and transfers, with every fault of a server (" << secondsSince(begin)
              << " s)\n";
    hostile::print(std::cout, matrix);
    return matrix.isWhole;
}

} // namespace

int main(int argc, char** argv) {
    try {
        CLI::App app("Does to the plug-in whatever a server can do");
        bool verbose = false;
        app.add_flag("--verbose", verbose, "tell every trial");
        CLI11_PARSE(app, argc, argv);
        const rlimit limit{largestFile, largestFile};
        bool good = tryFaults();
        ::setrlimit(RLIMIT_FSIZE, &limit);
        good = tryMaterials(verbose) && good;
        std::cout << (good ? "\nno harm was done\n" : "\nharm was done: see FAULT\n");
        return good ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << "hostile_test: " << error.what() << "\n";
        return EXIT_FAILURE;
    }
}
