#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "sandbox/cli/clientsystem.h"

namespace sandbox {

/// A program of the client that keeps a file in use.
struct Holder {
    long long id = 0;
    std::string program; ///< native path of what it runs
    std::string file;    ///< client path of what it keeps
};

/// What one call of xsandbox leaves for the next; run.json in the state folder.
struct RunState {
    std::string scenario;  ///< its absolute path
    std::size_t phase = 0; ///< phases carried out
    std::string address;   ///< of the platform, while a run lasted
    std::vector<Holder> holders;
};

/// An empty state when there is none or it is damaged.
RunState readRunState(const Folders& folders);
/// Throws std::runtime_error when it cannot be written.
void saveRunState(const Folders& folders, const RunState& state);

/// Ends the holders that still run what they were started with, and forgets all. The
/// ones ended, in words.
std::vector<std::string> endHolders(const ClientSystem& system);

} // namespace sandbox
