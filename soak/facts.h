#pragma once

#include <string>

namespace soak {

/// What the system tells of the host's process.
struct Facts {
    double cpuSeconds = 0;
    double threads = 0;
    double handles = 0;  ///< of the client's system
    double memory = 0;   ///< KB of its own, without what is mapped from files
    double resident = 0; ///< KB in all; 0 when there is no such process
};

/// From the texts of /proc/N/stat and /proc/N/status, all but the handles. Any thread.
Facts factsOf(const std::string& stat, const std::string& status);

/// What the counter of handles has written, with its exit status or the system's error. Throws
/// std::runtime_error for one that has failed or found none: a running host has some.
double toldHandles(int exit, const std::string& text);

} // namespace soak
