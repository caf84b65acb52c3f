#pragma once

#include <atomic>
#include <functional>
#include <httplib.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/server/bodyfaults.h"
#include "sandbox/server/gate.h"
#include "sandbox/server/kelvarserver.h"
#include "sandbox/server/serverfaults.h"
#include "sandbox/server/storage.h"
#include "sandbox/server/updateplatform.h"
#include "sandbox/server/upgradeserver.h"

namespace sandbox {

/// Where the platform's requests arrive: each is judged by the server that it is for, and
/// answered rightly or as the fault that it meets has it. Any thread; a request may block its
/// own for as long as its fault lasts.
class RequestDesk {
public:
    RequestDesk(std::string filesFolder, UpdatePlatform::Observer watcher)
        : storageFolder(std::move(filesFolder)), observer(std::move(watcher)) {}

    /// Once, ahead of all requests.
    void setPort(int listening) { port = listening; }
    std::string address() const { return "http://127.0.0.1:" + std::to_string(port); }

    void beginRun(const Offer& offer, const ExpectedRun& run, const UpgradeOffer& upgradeOffer,
                  const ExpectedUpgrade& expected, RunFaults runFaults);
    RunReport endRun();
    void stopJudging();
    /// Lets every request that waits come to its end.
    void stop();

    void post(const httplib::Request& request, httplib::Response& response);
    void get(const httplib::Request& request, httplib::Response& response);
    void refuse(const httplib::Request& request, httplib::Response& response);

    Gate& transferGate() { return gate; }

private:
    using Told = std::function<void(std::uint64_t sent)>;

    void tell(const PlatformEvent& event);
    void complain(const std::string& text);
    void checkRunning(const httplib::Request& request);
    std::string answerQuestion(std::size_t question, const httplib::Request& request);
    std::string answerUpgrade(const httplib::Request& request);
    std::string fetch(const std::string& id, bool isOfUpgrade, const Headers& headers);
    std::string materialIdOf(const httplib::Request& request);
    void send(const std::string& id, const std::shared_ptr<StoredFile>& file,
              const std::optional<ServerFaults::Met>& met, httplib::Response& response);
    bool sendFaulty(const ServerFaults::Met& met, const Answer& right, const Told& told);
    Gate::Ticket takeEffect(const ServerFaults::Met& met);

    const std::string storageFolder;
    const UpdatePlatform::Observer observer;
    std::atomic<int> port{0};
    Gate gate;
    std::atomic<bool> stopping{false};

    std::mutex guard; ///< of all that follows, and held while the observer runs
    bool judging = true;
    bool running = false;
    std::vector<std::string> complaints;
    KelvarServer kelvar{[this](const std::string& text) {
        complain(text);
    }};
    UpgradeServer upgrade{[this](const std::string& text) {
        complain(text);
    }};
    ServerFaults faults;
};

} // namespace sandbox
