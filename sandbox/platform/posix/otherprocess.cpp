#include "sandbox/platform/otherprocess.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <fstream>
#include <limits>
#include <string>
#include <thread>

namespace sandbox {

std::filesystem::path processFile(long long id) {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/" + std::to_string(id) + "/exe", error);
}

bool endProcessOf(long long id) {
    const auto process = static_cast<pid_t>(id);
    if (::kill(process, SIGTERM) != 0) {
        return errno == ESRCH;
    }
    const auto limit = std::chrono::steady_clock::now() + std::chrono::seconds(5);
    // A zombie still has a number but runs no file any more.
    while (!processFile(id).empty()) {
        if (std::chrono::steady_clock::now() > limit) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return true;
}

bool isForgotten(long long id) {
    return ::kill(static_cast<pid_t>(id), 0) != 0 && errno == ESRCH;
}

std::uint64_t peakMemoryOf(long long id) {
    std::ifstream status("/proc/" + std::to_string(id) + "/status");
    for (std::string key; status >> key;) {
        std::uint64_t kilobytes = 0;
        if (key == "VmHWM:" && status >> kilobytes) {
            return kilobytes * 1024;
        }
        status.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
    }
    return 0;
}

} // namespace sandbox
