#include "soak/soak.h"

#include <algorithm>
#include <fstream>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <thread>

#include "sandbox/common/events.h"
#include "sandbox/faults/clientfaults.h"
#include "sandbox/faults/faultlog.h"
#include "sandbox/platform/stopsignal.h"
#include "soak/demands.h"
#include "soak/scenario.h"

namespace soak {
namespace {

using Json = nlohmann::json;
using Clock = std::chrono::steady_clock;

constexpr auto stepTime = std::chrono::milliseconds(50);
constexpr double packetSeconds = 4;
constexpr double settleSeconds = 3;
constexpr double packetPatience = 60;
constexpr std::size_t phase = 1; ///< the host lives in one
/// A host that ends looks for the chains of lost requests where such a fault stands.
constexpr const char* lostBefore = R"([{"on":"packageCheck","fault":"drop"}])";

/// Faults of the programme whose chains never end.
constexpr const char* lostCheck = "drop on packageCheck";
constexpr const char* unreadCheck = "not-json on packageCheck";

/// As sandbox::Fault::title has it.
std::string titleOf(const Json& line) {
    return line.value("fault", "") + " on " + line.value("on", "");
}

std::size_t filesIn(const std::filesystem::path& folder) {
    std::size_t count = 0;
    std::error_code error; // the first run makes it
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        count += entry.is_regular_file() ? 1 : 0;
    }
    return count;
}

} // namespace

Soak::Soak(const Order& what)
    : order(what), supply(what.folder / "storage",
                          what.binaries / (what.windows ? "setupprogram.exe" : "setupprogram")),
      clientVersion(firstClient),
      platform((what.folder / "storage").string(),
               [this](const sandbox::PlatformEvent& event) { watch(event); }),
      sampler(what.folder / "samples.csv", static_cast<double>(what.length.count()), what.windows) {
}

double Soak::elapsed() const {
    return std::chrono::duration<double>(Clock::now() - began).count();
}

Findings Soak::run() {
    platform.start();
    platform.stopJudging();
    supply.nextPacket();
    supply.nextPackage(false);
    const std::filesystem::path file = order.folder / "scenario.json";
    std::ofstream(file) << scenarioOf(platform.address()).dump(2);
    client = std::make_unique<Client>(order.folder / "run", file, order.binaries, order.windows);
    tail = std::make_unique<sandbox::EventTail>(client->folders().events());
    began = Clock::now();
    turn = programme().size() - 1;
    const double length = static_cast<double>(order.length.count());
    while (elapsed() < length && goesOn()) {
        followTurns();
        step();
    }
    found.seconds = elapsed();
    if (isOn) {
        end(programme()[turn]);
        --found.turns; // it had less than its time
    }
    awaitLastPacket();
    found.isBrokenOff = sandbox::stopSignalled();
    conclude();
    return found;
}

bool Soak::goesOn() const {
    return !found.isHostGone && !sandbox::stopSignalled();
}

/// Lets what is under way end, and one packet more be done.
void Soak::awaitLastPacket() {
    const double off = elapsed();
    const std::size_t before = supply.packets();
    const auto isWaiting = [&] {
        return !found.isServedAtLast && elapsed() < off + packetPatience;
    };
    while (goesOn() && (elapsed() < off + settleSeconds || isWaiting())) {
        step();
        found.isServedAtLast =
            found.isServedAtLast ||
            (supply.packets() > before && tally.packetVersion() == supply.packet().version);
    }
}

void Soak::step() {
    for (const Json& event : tail->next()) {
        tally.see(event);
    }
    if (tally.heap() && !sampler.isTaken(*tally.heap())) {
        sampler.look(*tally.heap(), keptNow(), filesIn(client->folders().client() / "update"));
    }
    muteHeldInstall();
    logInAgain();
    supplyNext();
    serve();
    sample();
    if (const auto exit = client->endedUi()) {
        ++(*exit == 0 ? found.uiGood : found.uiOther);
    }
    std::this_thread::sleep_for(stepTime);
}

void Soak::conclude() {
    takeFacts();
    found.cpuSeconds = firstFacts ? lastFacts->cpuSeconds - firstFacts->cpuSeconds : 0;
    found.kept = keptNow();
    sandbox::layOutClientFaults(client->folders(), phase, faultsOf(lostBefore));
    found.hostExit = client->stop();
    found.delayedMoves = client->delayedMoves();
    found.leftInUpdate = filesIn(client->folders().client() / "update");
    for (const Json& line : sandbox::readFaultLog(client->folders().faults())) {
        ++found.clientFaults[titleOf(line)];
    }
    found.courses = sampler.courses();
    found.isWindows = order.windows;
    found.done = tally.done();
    found.done.emplace_back(setupsThatFailed, failedSetups);
    found.failures = tally.failures();
    found.packets = supply.packets();
    found.packetsDone = tally.packetsDone();
    found.packages = supply.packages();
    const std::lock_guard lock(guard);
    found.faults = met;
}

void Soak::supplyNext() {
    if (elapsed() >= nextPacket) {
        supply.nextPacket();
        nextPacket = elapsed() + packetSeconds;
    }
}

bool Soak::hasPackage() {
    const std::lock_guard lock(guard);
    return clientVersion == supply.clientVersions().back();
}

/// Tells the servers what they have, when it has changed.
void Soak::serve() {
    sandbox::Offer offer = supply.packet();
    if (tally.packetVersion() == offer.version) {
        offer.modules.clear();
        offer.materials.clear();
    }
    const std::string faults = faultsNow();
    const std::string now = offer.version + ' ' + std::to_string(offer.materials.size()) + ' ' +
                            supply.clientVersions().back() + faults;
    if (now == served) {
        return;
    }
    served = now;
    const std::vector<sandbox::Fault> all = faultsOf(faults);
    sandbox::layOutClientFaults(client->folders(), phase, all);
    sandbox::ExpectedUpgrade expected;
    expected.versions = supply.clientVersions();
    platform.beginRun(offer, {}, supply.upgrade(), expected,
                      {all, [this](const sandbox::Fault& fault, std::size_t /*attempt*/) {
                           const std::lock_guard lock(guard);
                           ++met[fault.title()];
                       }});
}

void Soak::sample() {
    if (sampler.isDue(elapsed()) && takeFacts()) {
        sampler.take(elapsed(), *lastFacts, keptNow(), isOn ? programme()[turn].name : "");
    }
}

/// False once the host has ended.
bool Soak::takeFacts() {
    const auto facts = client->facts();
    found.isHostGone = !facts && !sandbox::stopSignalled(); // which the host gets as well
    if (facts) {
        firstFacts = firstFacts ? firstFacts : facts;
        lastFacts = facts;
    }
    return facts.has_value();
}

Kept Soak::keptNow() {
    std::size_t spoiled = 0;
    for (const Json& line : sandbox::readFaultLog(client->folders().faults())) {
        spoiled += titleOf(line) == lostCheck ? 1 : 0;
    }
    const std::lock_guard lock(guard);
    const auto unread = met.find(unreadCheck);
    spoiled += unread == met.end() ? 0 : unread->second;
    return tally.kept(sandbox::monotonicMilliseconds(), spoiled);
}

void Soak::watch(const sandbox::PlatformEvent& event) {
    if (event.kind == sandbox::PlatformEvent::Kind::packageCheck) {
        const std::lock_guard lock(guard);
        clientVersion = event.detail.substr(0, event.detail.find_first_of(" ,"));
    }
}

} // namespace soak
