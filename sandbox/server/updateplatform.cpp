#include "sandbox/server/updateplatform.h"

#include <httplib.h>
#include <mutex>
#include <stdexcept>
#include <thread>

#include "sandbox/server/kelvarserver.h"
#include "sandbox/server/sending.h"
#include "sandbox/server/upgrademessages.h"
#include "sandbox/server/upgradeserver.h"

namespace sandbox {
namespace {

constexpr const char* jsonType = "application/json";
constexpr int httpOk = 200;

Headers headersOf(const httplib::Request& request) {
    return {request.headers.begin(), request.headers.end()};
}

} // namespace

struct UpdatePlatform::State {
    std::string storageFolder;
    Observer observer;
    httplib::Server server;
    std::thread thread;
    int port = 0;

    Gate gate;

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

    void tell(const PlatformEvent& event) {
        if (observer) {
            observer(event);
        }
    }

    void complain(const std::string& text) {
        if (!judging) {
            return;
        }
        complaints.push_back(text);
        tell({PlatformEvent::Kind::complaint, text, "", 0, 0});
    }

    std::string ownAddress() const { return "http://127.0.0.1:" + std::to_string(port); }

    void checkRunning(const httplib::Request& request) {
        if (!running) {
            complain(request.method + " " + request.target + ": asked while no run was under way");
        }
    }

    void refuse(const httplib::Request& request, httplib::Response& response) {
        const std::lock_guard lock(guard);
        complain(request.method + " " + request.target + ": nothing is there");
        response.status = 404;
        response.set_content("not found", "text/plain");
    }

    void post(const httplib::Request& request, httplib::Response& response) {
        const auto question = KelvarServer::questionOf(request.target);
        const bool isUpgrade =
            request.target == packageCheckPath || request.target == fileCheckPath;
        if (!question && !isUpgrade) {
            refuse(request, response);
            return;
        }
        const std::lock_guard lock(guard);
        checkRunning(request);
        const Answered answered =
            question ? answerQuestion(*question, request) : answerUpgrade(request);
        response.status = answered.status;
        if (answered.stopAt) {
            sendCut(answered.body, *answered.stopAt, jsonType, response);
        } else {
            response.set_content(answered.body, jsonType);
        }
    }

    Answered answerQuestion(std::size_t question, const httplib::Request& request) {
        Answered answered = kelvar.answer(question, headersOf(request), request.body, ownAddress());
        tell({PlatformEvent::Kind::question, std::string(conversation[question].name),
              kelvar.wordsOf(question), 0, 0});
        return answered;
    }

    Answered answerUpgrade(const httplib::Request& request) {
        const bool isPackage = request.target == packageCheckPath;
        const Headers headers = headersOf(request);
        std::string words;
        Answered answered = isPackage
                                ? upgrade.checkPackage(headers, request.body, ownAddress(), words)
                                : upgrade.checkFiles(headers, request.body, ownAddress(), words);
        tell({isPackage ? PlatformEvent::Kind::packageCheck : PlatformEvent::Kind::fileCheck, "",
              words, 0, 0});
        return answered;
    }

    void get(const httplib::Request& request, httplib::Response& response) {
        const std::string ofUpgrade = UpgradeServer::fileIdOf(request.target);
        const std::string id = ofUpgrade.empty() ? materialIdOf(request) : ofUpgrade;
        const auto file =
            id.empty() ? nullptr : std::make_shared<StoredFile>(storageFolder + "/" + id);
        if (!file || !file->isOpen()) {
            refuse(request, response);
            return;
        }
        TransferFault fault;
        {
            const std::lock_guard lock(guard);
            checkRunning(request);
            const Headers headers = headersOf(request);
            fault = ofUpgrade.empty() ? kelvar.fetch(id, headers) : upgrade.fetch(id, headers);
            tell({PlatformEvent::Kind::transfer, id, "", 0, file->size()});
        }
        if (fault.status != httpOk) {
            response.status = fault.status;
            response.set_content("not now", "text/plain");
        } else if (file->size() > 0) {
            send(id, file, fault, response);
        }
    }

    std::string materialIdOf(const httplib::Request& request) {
        const std::lock_guard lock(guard);
        return kelvar.fileIdOf(request.target);
    }

    void send(const std::string& id, const std::shared_ptr<StoredFile>& file,
              const TransferFault& fault, httplib::Response& response) {
        const auto told = [this, id, total = file->size()](std::uint64_t sent) {
            const std::lock_guard lock(guard);
            tell({PlatformEvent::Kind::transfer, id, "", sent, total});
        };
        sendFile(file, {told, fault.stopAt.value_or(file->size()), fault.holdAt, &gate}, response);
    }
};

UpdatePlatform::UpdatePlatform(std::string storageFolder, Observer observer)
    : state(std::make_unique<State>()) {
    state->storageFolder = std::move(storageFolder);
    state->observer = std::move(observer);
    httplib::Server& server = state->server;
    server.set_tcp_nodelay(true);
    server.set_keep_alive_timeout(1);
    server.set_keep_alive_max_count(1000);
    server.Post(".*", [this](const httplib::Request& request, httplib::Response& response) {
        state->post(request, response);
    });
    const auto unknown = [this](const httplib::Request& request, httplib::Response& response) {
        state->refuse(request, response);
    };
    server.Put(".*", unknown).Patch(".*", unknown).Delete(".*", unknown).Options(".*", unknown);
    server.Get(".*", [this](const httplib::Request& request, httplib::Response& response) {
        state->get(request, response);
    });
}

UpdatePlatform::~UpdatePlatform() {
    state->gate.open();
    state->server.stop();
    if (state->thread.joinable()) {
        state->thread.join();
    }
}

void UpdatePlatform::start() {
    state->port = state->server.bind_to_any_port("127.0.0.1");
    if (state->port <= 0) {
        throw std::runtime_error("the update platform found no port to listen on");
    }
    state->thread = std::thread([this] { state->server.listen_after_bind(); });
    while (!state->server.is_running()) {
        std::this_thread::yield(); // stop() before the loop runs would be lost
    }
}

std::string UpdatePlatform::address() const {
    return state->ownAddress();
}

void UpdatePlatform::beginRun(const Offer& offer, const ExpectedRun& run,
                              const UpgradeOffer& upgrade, const ExpectedUpgrade& expected) {
    const std::lock_guard lock(state->guard);
    state->gate.shut();
    state->kelvar.beginRun(offer, run);
    state->upgrade.beginRun(upgrade, expected);
    state->complaints.clear();
    state->running = true;
}

void UpdatePlatform::stopJudging() {
    const std::lock_guard lock(state->guard);
    state->judging = false;
}

bool UpdatePlatform::isHeld() const {
    return state->gate.isHeld();
}

void UpdatePlatform::release() {
    state->gate.open();
}

RunReport UpdatePlatform::endRun() {
    state->gate.open();
    const std::lock_guard lock(state->guard);
    state->kelvar.endRun();
    state->running = false;
    return {state->kelvar.questions(), state->kelvar.downloads(), state->upgrade.report(),
            state->complaints};
}

} // namespace sandbox
