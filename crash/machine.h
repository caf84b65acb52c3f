#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <sys/types.h>
#include <vector>

#include "crash/durablestores.h"
#include "crash/operations.h"
#include "crash/packet.h"
#include "sandbox/platform/heldfile.h"
#include "support/fakehost.h"

namespace crash {

/// Entries of filelist.xml by name, "version md5 size".
using Entries = std::map<std::string, std::string>;

/// What stands on a machine. Paths are the client's, relative to its folder.
struct Snapshot {
    std::map<std::string, std::string> files;
    Stored stored;
    std::vector<std::string> delayed; ///< "from > to", or "from" to delete
    std::optional<Entries> fileList;  ///< nothing when it cannot be read

    bool operator==(const Snapshot&) const = default;
};

/// How a session of the host ended.
enum class End { itself, asPlanned, exception, other };

struct Session {
    End end = End::other;
    std::vector<Step> steps = {};
    std::size_t storeLookups = 0;
    std::vector<std::string> programs = {};
    std::vector<std::string> log = {};
};

/// A client's machine: its files on the real disk, its stores, what its system keeps for the
/// restart and the programs that keep files in use. Each session of the host is a process of
/// its own. One at a time in a process; one thread.
class Machine {
public:
    explicit Machine(const Packet& packet);

    /// As it was before the first session.
    void layOut();

    /// A start of the host with one run of the channel, to its end.
    Session run(Plan plan = {});

    /// Two hosts at once: one runs up to that operation, another one from its start to its
    /// end, then the first one goes on.
    struct Pair {
        Session first;
        Session second;
    };
    Pair runBeside(std::size_t at);

    /// What a session does in its own process, instead of a run of the channel.
    using Work = void (*)(FakeHost& host);
    void does(Work work) { sessionWork = work; }

    /// Ends the programs that keep files in use and carries out what the system keeps.
    void restart();
    /// The same where the system keeps something; else the machine is not restarted.
    void restartIfAsked();
    /// What restarts could not do since the client was laid out, in words.
    const std::vector<std::string>& notMoved() const { return failedMoves; }

    Snapshot look() const;

    void store(const Stored& stored) { writeStores(storesFile(), stored); }
    Stored stored() const { return readStores(storesFile()); }
    /// A file of the client, on the disk.
    std::filesystem::path file(const std::string& path) const {
        return host.diskPath("client\\" + path);
    }
    const Packet& packet() const { return content; }
    /// Text with the client's folder left out and hashes by their names.
    std::string told(std::string text) const;

    std::uint32_t tick = 10'000'000; ///< of the next session; goes on with each

private:
    struct Started {
        pid_t process = -1;
        std::size_t number = 0;
    };
    Started start(Plan plan);
    Session await(const Started& started) const;

    std::filesystem::path storesFile() const { return host.folder / "stores.json"; }
    std::filesystem::path reportFile(std::size_t number) const {
        return host.folder / ("session" + std::to_string(number) + ".json");
    }
    void writeFileList() const;
    [[noreturn]] void live(Plan plan, std::size_t number);
    void answerFor(const Stored& stored);
    void report(std::size_t number) const;
    Session readReport(int status, std::size_t number) const;

    const Packet& content;
    FakeHost host;
    DurableSettings settings;
    DurableVersions versions;
    std::vector<std::unique_ptr<sandbox::HeldFile>> held;
    std::vector<std::string> failedMoves;
    Work sessionWork = nullptr;
    std::size_t sessions = 0;
};

} // namespace crash
