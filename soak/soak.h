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
#include "soak/findings.h"
#include "soak/programme.h"
#include "soak/sampler.h"
#include "soak/supply.h"
#include "soak/tally.h"

namespace soak {

struct Order {
    std::chrono::seconds length{120};
    bool windows = false;
    std::filesystem::path folder;   ///< of the soak's files
    std::filesystem::path binaries; ///< where the client's setup program is
};

/// A host with servers that get newer and go wrong, for so long. One thread.
class Soak {
public:
    explicit Soak(const Order& what);

    /// Ends ahead of its time when the host does. Throws std::runtime_error when a part fails.
    Findings run();

private:
    bool goesOn() const;
    void step();
    void awaitLastPacket();
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
    bool takeFacts();
    Kept keptNow();
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
    Sampler sampler;
    Findings found;
    std::chrono::steady_clock::time_point began;
    std::optional<Facts> firstFacts;
    std::optional<Facts> lastFacts;
    double nextPacket = 0;
    double nextTurn = 0;
    double turnOff = 0;
    std::size_t turn = 0;
    bool isOn = false;
    bool hasMuted = false;
    std::size_t installsBefore = 0; ///< the turn
    std::size_t failedSetups = 0;
    std::optional<double> logIn;
    std::string wordsAfterLogIn;
    std::string served; ///< what the servers have now
};

} // namespace soak
