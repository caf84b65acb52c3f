#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "sandbox/server/offer.h"

namespace sandbox {

/// Something that a watcher of the platform sees.
struct PlatformEvent {
    enum class Kind {
        question,  ///< `text` is the question's name, `detail` what it asked in words
        transfer,  ///< `bytes` of `total` of `text` (a file id) are sent
        complaint, ///< `text` says what was wrong with a request
    };
    Kind kind = Kind::question;
    std::string text;
    std::string detail;
    std::uint64_t bytes = 0;
    std::uint64_t total = 0;
};

/// What came of one run.
struct RunReport {
    std::size_t questions = 0;           ///< of the conversation, answered or not
    std::vector<std::string> downloads;  ///< file ids in the order of their requests
    std::vector<std::string> complaints; ///< everything that was not as expected
};

/// The update platform and the material storage on loopback, on a port that the system
/// chooses. Every question is compared with what the client has to send, to the byte; one
/// that is unexpected, repeated or out of order is a complaint.
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

    /// Announces a run: from now on the conversation is expected once, from its start.
    void beginRun(const Offer& offer, const ExpectedRun& run);

    /// Ends the run and tells what came of it, questions that never came included.
    RunReport endRun();

private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace sandbox
