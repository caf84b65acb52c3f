#include <chrono>
#include <iostream>
#include <memory>
#include <thread>

#include <CLI/CLI.hpp>

#include "sandbox/common/events.h"
#include "sandbox/common/folders.h"
#include "sandbox/faults/clientfaults.h"
#include "sandbox/platform/filelock.h"
#include "sandbox/platform/messagebox.h"
#include "sandbox/platform/stopsignal.h"
#include "sandbox/trayhost/commands.h"
#include "sandbox/trayhost/modules.h"

namespace {

constexpr const char* description =
    "Hosts the update plug-in: loads the client's modules and the plug-in from the folder of\n"
    "this program and drives it until --ticks, --runs, a signal or the file\n"
    "../sandbox/stop ends it. Chains that never end, as their channels want it, do not\n"
    "keep it from ending.";

constexpr const char* statuses =
    "Exit status: 0 done; 1 an exception reached the host; 2 the plug-in, one of its exports\n"
    "or the version store is missing; 3 the limit came before the runs had ended; 4 the\n"
    "plug-in did not start; 5 work was still going on at the end; 6 another host runs in\n"
    "the folder; 100 and above a wrong command line; 255 the plug-in found a wrong signature.";

/// Milliseconds; the first is above the time-out of a request.
constexpr std::int64_t settleTime = 30000;
constexpr std::int64_t settleTimeAfterFailure = 2000;
constexpr std::int64_t lockTime = 5000;
constexpr auto lockPause = std::chrono::milliseconds(20);

struct Request {
    HostOptions host;
    bool service = false;
    bool version = false;
    std::string newVersion;
};

void declare(CLI::App& app, Request& request) {
    app.footer(statuses);
    app.add_option("--interval", request.host.interval, "milliseconds between ticks")
        ->capture_default_str();
    app.add_option("--ticks", request.host.ticks, "stop after this many ticks");
    app.add_option("--runs", request.host.runs,
                   "stop after this many chains of the Kelvar channel beyond its time gate");
    app.add_option("--limit", request.host.limit, "give up after this many milliseconds");
    const auto modes = app.add_option_group("Instead of driving the plug-in");
    modes->require_option(0, 1);
    modes->add_flag("--service", request.service, "wait while the channel's own service runs");
    modes->add_flag("--version", request.version, "print the virus library's version");
    modes->add_option("--set-version", request.newVersion, "store the virus library's version");
}

/// Nothing when another host has it. One that has just ended may keep it for a moment.
std::unique_ptr<sandbox::FileLock> lockFolder() {
    const std::int64_t end = sandbox::monotonicMilliseconds() + lockTime;
    for (;;) {
        auto lock = std::make_unique<sandbox::FileLock>(sandbox::processFolders().hostLock(),
                                                        sandbox::FileLock::Wait::no);
        if (lock->isHeld()) {
            return lock;
        }
        if (sandbox::monotonicMilliseconds() > end) {
            return nullptr;
        }
        std::this_thread::sleep_for(lockPause);
    }
}

ExitStatus carryOut(const Request& request) {
    loadClientModules();
    if (request.version) {
        return printVersion();
    }
    if (!request.newVersion.empty()) {
        return storeVersion(request.newVersion);
    }
    const auto running = lockFolder();
    if (!running) {
        std::cerr << "trayhost: another host runs in this folder\n";
        return exitTaken;
    }
    static Host& host = *new Host(request.host); // log lines may come to the very end
    const ExitStatus status = request.service ? driveService(host) : drivePlugin(host);
    const bool isSettled = host.settle(status == exitDone ? settleTime : settleTimeAfterFailure);
    if (!isSettled || sandbox::lostChains() > 0) {
        // Threads that run or wait would meet objects that a return from main destroys.
        std::_Exit(!isSettled && status == exitDone ? exitStillBusy : status);
    }
    return status;
}

int run(int argc, char** argv) {
    sandbox::watchStopSignals();
    sandbox::answerMessageBoxes();
    CLI::App app(description, "trayhost");
    Request request;
    declare(app, request);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error);
    }
    return carryOut(request);
}

/// Ends the process as it stands: other threads may be anywhere in the plug-in.
[[noreturn]] void endFailed(const char* what) {
    sandbox::emitFailure("trayhost", what);
    std::cerr << "trayhost: " << what << '\n';
    std::_Exit(exitFailed);
}

} // namespace

int main(int argc, char** argv) {
    try {
        return run(argc, argv);
    } catch (const std::exception& error) {
        endFailed(error.what());
    } catch (...) {
        endFailed("an exception of an unknown type");
    }
}
