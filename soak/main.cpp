#include <CLI/CLI.hpp>
#include <cstdlib>
#include <iostream>

#include "sandbox/platform/hostprocess.h"
#include "sandbox/platform/stopsignal.h"
#include "soak/report.h"
#include "soak/soak.h"

namespace {

constexpr const char* description =
    "Keeps a host of the sandbox busy for so many seconds: a tick each 50 ms, packets and "
    "packages\n"
    "that get newer every few seconds, and in turn every channel's fault switched on and off.\n"
    "Prints whether the host's memory, threads and handles have grown beyond what stays by "
    "design.\n"
    "Growth by tick shows in some minutes; an hour is a good length.";
constexpr const char* statuses =
    "Exit status: 0 all is flat; 1 something has grown, or the host was not busy, has ended by\n"
    "itself or has not ended in order; 2 the soak failed, was broken off or was too short to tell.";
constexpr int failed = 2;
constexpr std::uint32_t shortest = 20;
constexpr std::uint32_t longest = 604'800;

int run(const soak::Order& order) {
    std::filesystem::remove_all(order.folder / "storage");
    std::filesystem::create_directories(order.folder / "storage");
    const soak::Findings findings = soak::Soak(order).run();
    return static_cast<int>(soak::report(findings, std::cout));
}

int soakAsTold(int argc, char** argv) {
    CLI::App app(description, "soak_run");
    app.footer(statuses);
    soak::Order order;
    std::uint32_t seconds = 0;
    app.add_option("seconds", seconds, "how long")
        ->required()
        ->check(CLI::Range(shortest, longest));
    app.add_flag("--windows", order.windows, "the client built for Windows, under Wine");
    CLI11_PARSE(app, argc, argv);
    const std::filesystem::path binaries = sandbox::executableFile().parent_path();
    const std::filesystem::path builds = binaries.parent_path();
    order.length = std::chrono::seconds(seconds);
    order.folder = builds / (order.windows ? "soak-windows" : "soak");
    order.binaries = order.windows ? builds / "windows" : binaries;
    sandbox::watchStopSignals();
    // Arenas are handed out to the first threads that stay, and each thread that stays keeps free
    // blocks in a cache of its own: both would look like growth of the host.
    ::setenv("MALLOC_ARENA_MAX", "1", 1);
    ::setenv("GLIBC_TUNABLES", "glibc.malloc.tcache_count=0", 1);
    return run(order);
}

} // namespace

int main(int argc, char** argv) {
    try {
        return soakAsTold(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "soak_run: " << error.what() << '\n';
        return failed;
    }
}
