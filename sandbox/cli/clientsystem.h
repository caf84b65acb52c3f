#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/common/folders.h"
#include "sandbox/platform/childprocess.h"
#include "sandbox/platform/delayed.h"

namespace sandbox {

/// What came of a restart of the machine.
struct Restarted {
    std::vector<PendingMove> waited;   ///< the requests that stood before
    std::vector<std::string> failures; ///< what did not happen, in words
};

/// The machine that a run's client lives on. All that differs between a client of this
/// system and one of Windows under Wine is behind it. One thread. All throw
/// std::runtime_error or a filesystem error.
class ClientSystem {
public:
    explicit ClientSystem(Folders runFolders) : where(std::move(runFolders)) {}
    virtual ~ClientSystem() = default;
    ClientSystem(const ClientSystem&) = delete;
    ClientSystem& operator=(const ClientSystem&) = delete;

    const Folders& folders() const { return where; }

    virtual const char* name() const = 0;

    /// Sets the machine up in the cleared folder of a run and starts it.
    virtual void install(const std::filesystem::path& binaries) = 0;

    /// The file of a program that is built, "x" or "x.exe".
    virtual std::string programFile(const std::string& program) const = 0;

    /// Copies a module such that its file has a version resource with that version.
    virtual void layOutModule(const std::filesystem::path& built,
                              const std::filesystem::path& target,
                              const std::string& version) const = 0;

    /// A file of the run as programs of the client are told it.
    virtual std::string spelled(const std::filesystem::path& file) const = 0;

    /// Starts a program of the client, in its folder; nothing when that cannot be.
    virtual std::optional<ChildProcess> start(const std::filesystem::path& program,
                                              const std::vector<std::string>& arguments,
                                              const std::filesystem::path& output) const = 0;

    /// Whether the process of that number, which belongs to this system, runs the program.
    virtual bool runs(long long process, const std::filesystem::path& program) const = 0;

    /// What waits for the next restart; the client's host must not run.
    virtual PendingList pending() const = 0;

    /// Restarts the machine; no program of the client may run.
    virtual Restarted restart() = 0;

    /// Ends all that the machine itself has running. It starts again with the next program.
    virtual void shutDown() = 0;

private:
    Folders where;
};

std::unique_ptr<ClientSystem> nativeSystem(const Folders& folders);

/// A Windows of the run's own, made after the Wine system in `original` when it is
/// installed.
std::unique_ptr<ClientSystem> wineSystem(const Folders& folders,
                                         const std::filesystem::path& original = {});

/// Where the Windows of a run lies; a native run has none.
std::filesystem::path wineFolder(const Folders& folders);

/// The system of the run that stands in the folder.
std::unique_ptr<ClientSystem> systemOf(const Folders& folders);

} // namespace sandbox
