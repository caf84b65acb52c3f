#include "sandbox/server/updateplatform.h"

#include <stdexcept>
#include <thread>

#include "sandbox/server/connection.h"
#include "sandbox/server/requestdesk.h"

namespace sandbox {

struct UpdatePlatform::State {
    State(std::string storageFolder, Observer observer)
        : desk(std::move(storageFolder), std::move(observer)) {}

    RequestDesk desk;
    ConnectionServer server;
    std::thread thread;
};

UpdatePlatform::UpdatePlatform(std::string storageFolder, Observer observer)
    : state(std::make_unique<State>(std::move(storageFolder), std::move(observer))) {
    httplib::Server& server = state->server;
    server.set_tcp_nodelay(true);
    server.set_keep_alive_timeout(1);
    server.set_keep_alive_max_count(1000);
    server.Post(".*", [this](const httplib::Request& request, httplib::Response& response) {
        state->desk.post(request, response);
    });
    const auto unknown = [this](const httplib::Request& request, httplib::Response& response) {
        state->desk.refuse(request, response);
    };
    server.Put(".*", unknown).Patch(".*", unknown).Delete(".*", unknown).Options(".*", unknown);
    server.Get(".*", [this](const httplib::Request& request, httplib::Response& response) {
        state->desk.get(request, response);
    });
}

UpdatePlatform::~UpdatePlatform() {
    state->desk.stop();
    state->server.stop();
    if (state->thread.joinable()) {
        state->thread.join();
    }
}

void UpdatePlatform::start() {
    const int port = state->server.bind_to_any_port("127.0.0.1");
    if (port <= 0) {
        throw std::runtime_error("the update platform found no port to listen on");
    }
    state->desk.setPort(port);
    state->thread = std::thread([this] { state->server.listen_after_bind(); });
    while (!state->server.is_running()) {
        std::this_thread::yield(); // stop() before the loop runs would be lost
    }
}

std::string UpdatePlatform::address() const {
    return state->desk.address();
}

void UpdatePlatform::beginRun(const Offer& offer, const ExpectedRun& run,
                              const UpgradeOffer& upgrade, const ExpectedUpgrade& expected,
                              RunFaults faults) {
    state->desk.beginRun(offer, run, upgrade, expected, std::move(faults));
}

void UpdatePlatform::stopJudging() {
    state->desk.stopJudging();
}

bool UpdatePlatform::isHeld() const {
    return state->desk.transferGate().isHeld();
}

void UpdatePlatform::release() {
    state->desk.transferGate().open();
}

RunReport UpdatePlatform::endRun() {
    return state->desk.endRun();
}

} // namespace sandbox
