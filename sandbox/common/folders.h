#pragma once

#include <filesystem>

namespace sandbox {

/// Where the files of one run lie, as native paths. Nothing is made by asking.
class Folders {
public:
    explicit Folders(std::filesystem::path runRoot) : top(std::move(runRoot)) {}

    const std::filesystem::path& root() const { return top; }
    std::filesystem::path client() const { return top / "client"; }
    std::filesystem::path home() const { return top / "home"; }
    std::filesystem::path state() const { return top / "sandbox"; }
    std::filesystem::path storage() const { return top / "storage"; }

    std::filesystem::path config() const { return state() / "config.json"; }
    std::filesystem::path settings() const { return state() / "settings.json"; }
    std::filesystem::path versions() const { return state() / "versions.json"; }
    std::filesystem::path log() const { return state() / "plugin.log"; }
    std::filesystem::path events() const { return state() / "events.jsonl"; }
    /// Faults that took effect, and those that the client's own side is to carry out.
    std::filesystem::path faults() const { return state() / "faults.jsonl"; }
    std::filesystem::path clientFaults() const { return state() / "clientfaults.json"; }
    /// What the user interface sends to the host's notification centre.
    std::filesystem::path commands() const { return state() / "commands.jsonl"; }
    /// Locked by the host while it runs.
    std::filesystem::path hostLock() const { return state() / "host.lock"; }
    /// The host stops when this file appears.
    std::filesystem::path stop() const { return state() / "stop"; }

private:
    std::filesystem::path top;
};

/// The folders of the run that this process is the host of: its executable lies in the
/// client folder. Any thread.
Folders processFolders();

} // namespace sandbox
