#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace sandbox::doctor {

/// Where the parts of an installation lie; an empty path is a part that is not known.
struct Places {
    std::filesystem::path client;
    std::filesystem::path fileList;
    std::filesystem::path firstFileList; ///< as the run was laid out; not there for one without
    std::filesystem::path settings;
    std::filesystem::path versions;
    std::filesystem::path log;      ///< of the plug-in
    std::filesystem::path storage;  ///< of the run's materials
    std::filesystem::path hostLock; ///< taken while the client's host runs
    std::filesystem::path runState; ///< what the sandbox has started
    std::filesystem::path wine;     ///< the client's Windows; a native client has none

    /// What the client's folder is called in its system's list, without regard to case.
    std::vector<std::string> clientNames() const;
};

/// The journal of delayed moves in a native client's folder: the sandbox's own.
inline constexpr const char* journalFile = "delayed-moves.journal";

/// Of the folder of a run, else of a client's folder, of which nothing else is known. Throws
/// std::runtime_error when the folder is neither.
Places placesOf(const std::filesystem::path& folder);

/// A path relative to the client's folder without "." and "..", in the spelling given; nothing
/// when it leaves the folder, or is the folder.
std::optional<std::string> pathBelow(const std::string& clientPath);

/// The same of a path as the system's list has it.
std::optional<std::string> pathBelow(const Places& places, const std::string& fullPath);

} // namespace sandbox::doctor
