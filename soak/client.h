#pragma once

#include <filesystem>
#include <memory>
#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "sandbox/cli/clientsystem.h"
#include "sandbox/platform/childprocess.h"
#include "soak/facts.h"

/// The client of the soak: a host that xsandbox keeps running, driven as its users drive it.
namespace soak {

/// One thread. What starts or asks throws std::runtime_error when that fails.
class Client {
public:
    /// Lays out the client of the scenario file in the folder and starts its host. The client's
    /// programs are in `binaries`; with `isWindows` they run under Wine.
    Client(std::filesystem::path runFolder, const std::filesystem::path& scenario,
           const std::filesystem::path& binaries, bool isWindows);
    /// Ends what still runs.
    ~Client();
    Client(const Client&) = delete;
    Client& operator=(const Client&) = delete;

    const sandbox::Folders& folders() const { return where; }

    /// Nothing once the host has ended. Throws when the handles of one that runs cannot be counted.
    std::optional<Facts> facts() const;

    /// "xsandbox set" with these words, and its end.
    void set(const std::vector<std::string>& words);

    /// Begins "xsandbox ui --do" with these words, unless one is still at it.
    void beginUi(const std::string& words);
    /// Its exit status, once, when it has ended.
    std::optional<int> endedUi();

    /// A program of the client begins or ends to keep the file in use; "/" separates.
    void hold(const std::string& file);
    void letGo();

    /// Ends the host in order, if it runs; its exit status.
    int stop();

    /// Moves that the system has to carry out at the restart; the host has ended.
    std::size_t delayedMoves();

private:
    using Words = std::vector<std::string>;

    /// Starts what runs the host; the rest of the work can fail without leaving that behind.
    Client(std::filesystem::path runFolder, const std::filesystem::path& scenario, bool isWindows);

    long long findHost() const;
    sandbox::ChildProcess start(Words words, const char* output) const;
    sandbox::ChildProcess startHere(const std::filesystem::path& program, const Words& words) const;
    std::pair<int, std::string> countedHandles() const;
    nlohmann::json told(const char* output) const;

    const sandbox::Folders where;
    const bool windows;
    const std::unique_ptr<sandbox::ClientSystem> system;
    sandbox::ChildProcess hosting;
    long long host = 0;
    std::optional<sandbox::ChildProcess> ui;
    std::optional<sandbox::ChildProcess> holder;
};

} // namespace soak
