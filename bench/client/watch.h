#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <string>

/// What the host of a measurement and its modules tell each other. The host makes it and hands it
/// to each module's export `benchWatch` before the plug-in starts; it lives as long as the process.
struct BenchWatch {
    std::string server; ///< address of the update platform
    std::wstring home;  ///< the client's home folder

    std::atomic<std::int64_t> firstRequest{0}; ///< nanoseconds; 0 before it
    std::atomic<std::int64_t> notified{0};     ///< when the run told that it placed files
};

using SetBenchWatch = void (*)(BenchWatch*);

inline std::int64_t nanoseconds() {
    const auto sinceStart = std::chrono::steady_clock::now().time_since_epoch();
    return std::chrono::duration_cast<std::chrono::nanoseconds>(sinceStart).count();
}
