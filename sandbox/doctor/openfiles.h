#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "sandbox/doctor/places.h"

namespace sandbox::doctor {

/// A process that keeps a file of the client in use.
struct OpenFile {
    std::string path; ///< relative to the client's folder
    long long process = 0;
    std::string program; ///< what the process runs
};

/// Natively a file is in use when a process holds a lock on it; under Wine when a process of
/// the client's Windows has it open or mapped. What processes of other users do is not seen.
std::vector<OpenFile> openFiles(const Places& places);

/// Whether a program of the client's Windows, or Wine itself, runs there.
bool isWineRunning(const Places& places);

} // namespace sandbox::doctor
