#include "sandbox/cli/stop.h"

#include <chrono>
#include <fstream>
#include <stdexcept>
#include <thread>

#include "sandbox/platform/filelock.h"

namespace sandbox {
namespace {

using Clock = std::chrono::steady_clock;
constexpr auto stopPause = std::chrono::milliseconds(20);
constexpr auto stopLimit = std::chrono::seconds(60); // work that is under way is waited for

} // namespace

bool stopHost(const Folders& folders) {
    if (!FileLock::isTaken(folders.hostLock())) {
        throw std::runtime_error("no host runs in " + folders.root().string());
    }
    std::ofstream(folders.stop()) << "the user has ended the run\n";
    const auto end = Clock::now() + stopLimit;
    while (FileLock::isTaken(folders.hostLock()) && Clock::now() < end) {
        std::this_thread::sleep_for(stopPause);
    }
    return !FileLock::isTaken(folders.hostLock());
}

} // namespace sandbox
