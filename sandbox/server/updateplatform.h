#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "sandbox/server/offer.h"
#include "sandbox/server/serverfaults.h"
#include "sandbox/server/upgradeoffer.h"

namespace sandbox {

/// Something that a watcher of the platform sees.
struct PlatformEvent {
    enum class Kind {
        question,     ///< `text` is the question's name, `detail` what it asked in words
        packageCheck, ///< `detail` is what the upgrade server was asked, and has, in words
        fileCheck,    ///< likewise
        transfer,     ///< `bytes` of `total` of `text` (a file id) are sent
        fault,        ///< `text` says which request met it and what it does
        complaint,    ///< `text` says what was wrong with a request
    };
    Kind kind = Kind::question;
    std::string text;
    std::string detail;
    std::uint64_t bytes = 0;
    std::uint64_t total = 0;
};

/// What came of one run.
struct RunReport {
    std::size_t questions = 0;          ///< of the conversation, answered or not
    std::vector<std::string> downloads; ///< of materials: file ids in the order of requests
    UpgradeReport upgrade;
    std::vector<std::string> complaints; ///< everything that was not as expected
};

/// The update platform, the material storage and the upgrade server on loopback, on a port
/// that the system chooses. Every question is compared with what the client has to send, to the
/// byte; one that is unexpected, repeated or out of order is a complaint. The upgrade server may be
/// asked at any moment of a run, and any number of times.
/// Threads: the operations belong to one thread; requests are served on threads of the
/// object's own, and the observer is called there, one call at a time.
class UpdatePlatform {
public:
    using Observer = std::function<void(const PlatformEvent&)>;

    /// Serves the files of `storageFolder`. `observer` may be empty.
    UpdatePlatform(std::string storageFolder, Observer observer);
    ~UpdatePlatform();
    UpdatePlatform(const UpdatePlatform&) = delete;
    UpdatePlatform& operator=(const UpdatePlatform&) = delete;

    /// Begins to listen. Throws std::runtime_error when there is no port to be had.
    void start();

    /// "http://127.0.0.1:port", once started.
    std::string address() const;

    /// Announces a run: from now on the conversation is expected once, from its start, or as
    /// often as `run` says.
    void beginRun(const Offer& offer, const ExpectedRun& run, const UpgradeOffer& upgrade = {},
                  const ExpectedUpgrade& expected = {}, RunFaults faults = {});

    /// From now on nothing is a complaint: a client that is kept running asks again and again,
    /// with what it has become.
    void stopJudging();

    /// Whether a transfer has come to the place where it is to wait.
    bool isHeld() const;
    /// Lets it go on, and every later one of the run.
    void release();

    /// Ends the run, with transfers that still wait, and tells what came of it, questions that
    /// never came included.
    RunReport endRun();

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace sandbox
