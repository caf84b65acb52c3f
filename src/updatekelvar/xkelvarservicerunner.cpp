#include "updatekelvar/xkelvarservicerunner.h"

#include <thread>

#include "updatekelvar/xupdatekelvar.h"

namespace {

constexpr std::uint32_t firstWaitMs = 30'000;
constexpr std::uint32_t beatMs = 300'000;

} // namespace

XKelvarServiceRunner& XKelvarServiceRunner::instance() {
    static auto* const runner = new XKelvarServiceRunner; // the loop outlives static objects
    return *runner;
}

void XKelvarServiceRunner::start() {
    std::thread([this] {
        if (!started.exchange(true)) {
            loop();
        }
    }).detach();
}

void XKelvarServiceRunner::loop() {
    channel = std::make_shared<XUpdateKelvar>();
    channel->init();
    wakeEvent = std::make_shared<Event>(Event::Reset::automatic);
    wakeEvent->wait(firstWaitMs);
    while (true) {
        channel->checkUpdate();
        wakeEvent->wait(beatMs);
    }
}
