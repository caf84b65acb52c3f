#include <CLI/CLI.hpp>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "crash/cancelsweep.h"
#include "crash/table.h"

// The whole sweep, with its table. Exit status 1 when something is lost that need not be.

namespace {

/// Whether nothing was lost that need not be.
bool sweepAll(std::size_t workers, bool verbose) {
    bool good = true;
    const auto tell = [&](const std::string& title, const std::vector<crash::Row>& rows) {
        std::cout << "\n" << title << ": " << rows.size() << " breaks\n";
        crash::printRows(std::cout, rows, verbose);
        crash::printTable(std::cout, rows);
        good = good && !rows.empty() && !crash::hasFault(rows);
    };
    tell("A packet of which everything can be placed or waits",
         crash::sweep(crash::wholePacket(), workers));
    tell("A packet with a group that is refused", crash::sweep(crash::refusedPacket(), workers));
    tell("A package, cancelled", crash::cancelSweep());
    return good;
}

} // namespace

int main(int argc, char** argv) {
    try {
        CLI::App app("Breaks a run of the plug-in at every operation, in every way");
        bool verbose = false;
        std::size_t workers = std::max(1U, std::thread::hardware_concurrency());
        app.add_flag("--verbose", verbose, "tell every row");
        app.add_option("--workers", workers, "processes at once")->check(CLI::Range(1, 64));
        CLI11_PARSE(app, argc, argv);
        return sweepAll(workers, verbose) ? EXIT_SUCCESS : EXIT_FAILURE;
    } catch (const std::exception& error) {
        std::cerr << "crash_sweep: " << error.what() << "\n";
        return EXIT_FAILURE;
    }
}
