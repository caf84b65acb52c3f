#pragma once

#include <chrono>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/cli/eventtail.h"
#include "sandbox/server/updateplatform.h"
#include "soak/client.h"
#include "soak/growth.h"
#include "soak/programme.h"
#include "soak/supply.h"
#include "soak/tally.h"

namespace soak {

struct Order {
    std::chrono::seconds length{120};
    bool windows = false;
    std::filesystem::path folder;   ///< of the soak's files
    std::filesystem::path binaries; ///< where the client's setup program is
};

/// What was sampled and counted.
struct Findings {
    std::vector<Point> memory; ///< KB
    std::vector<Point> threads;
    std::vector<Point> handles;
    bool isWindows = false;
    double seconds = 0;
    double cpuSeconds = 0; ///< of the host
    std::vector<std::pair<std::string, std::size_t>> done;
    std::map<std::string, std::size_t> faults; ///< of the servers, by how often they took effect
    std::map<std::string, std::size_t> clientFaults; ///< of its modules, which are counted once
    std::map<std::string, std::size_t> failures;
    std::size_t turns = 0;
    std::size_t uiGood = 0;
    std::size_t uiOther = 0;
    std::size_t packets = 0;
    std::size_t packages = 0;
    std::size_t delayedMoves = 0;
    std::size_t leftInUpdate = 0; ///< files
    Kept kept;
    int hostExit = -1;
};

/// A host with servers that get newer and go wrong, for so long. One thread.
class Soak {
public:
    explicit Soak(const Order& what);

    /// Throws std::runtime_error when the host ends by itself or a part fails.
    Findings run();

private:
    void step();
    void conclude();
    void supplyNext();
    void serve();
    bool hasPackage();
    std::string faultsNow() const;
    const char* fileFaults() const;
    void followTurns();
    void begin(const Turn& now);
    void end(const Turn& now);
    void muteHeldInstall();
    void logInAgain();
    void sample();
    double elapsed() const;
    void watch(const sandbox::PlatformEvent& event);

    const Order order;
    Supply supply;
    std::mutex guard; ///< of what the servers' threads tell
    std::map<std::string, std::size_t> met;
    std::string clientVersion;
    sandbox::UpdatePlatform platform;
    std::unique_ptr<Client> client;
    std::unique_ptr<sandbox::EventTail> tail;
    Tally tally;
    Findings found;
    std::chrono::steady_clock::time_point began;
    std::optional<Facts> firstFacts;
    double nextSample = 0;
    double nextPacket = 0;
    double nextTurn = 0;
    double turnOff = 0;
    std::size_t turn = 0;
    bool isOn = false;
    bool hasMuted = false;
    std::optional<double> logIn;
    std::string wordsAfterLogIn;
    std::string served; ///< what the servers have now
};

} // namespace soak
