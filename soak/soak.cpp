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
#include "soak/scenario.h"

namespace soak {
namespace {

using Json = nlohmann::json;
using Clock = std::chrono::steady_clock;

constexpr auto stepTime = std::chrono::milliseconds(50);
constexpr double secondsOn = 5;
constexpr double secondsOff = 5;
constexpr double packetSeconds = 4;
constexpr double sampleSeconds = 10;
constexpr double fewestSamples = 24;
constexpr double settleSeconds = 3;
constexpr double loginSeconds = 1;
constexpr std::size_t phase = 1; ///< the host lives in one
/// A host that ends looks for the chains of lost requests where such a fault stands.
constexpr const char* lostBefore = R"([{"on":"packageCheck","fault":"drop"}])";

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

std::size_t filesIn(const std::filesystem::path& folder) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
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
               [this](const sandbox::PlatformEvent& event) { watch(event); }) {}

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
    std::ofstream(order.folder / "samples.csv")
        << "seconds,own KB,resident KB,threads,handles,CPU s,kept chains,kept retries,fault\n";
    client = std::make_unique<Client>(order.folder / "run", file, order.binaries, order.windows);
    tail = std::make_unique<sandbox::EventTail>(client->folders().events());
    began = Clock::now();
    turn = programme().size() - 1;
    const double length = static_cast<double>(order.length.count());
    while (elapsed() < length && !sandbox::stopSignalled()) {
        followTurns();
        step();
    }
    found.seconds = elapsed();
    if (isOn) {
        end(programme()[turn]);
    }
    while (elapsed() < found.seconds + settleSeconds) {
        step();
    }
    conclude();
    return found;
}

void Soak::step() {
    for (const Json& event : tail->next()) {
        tally.see(event);
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
    const auto last = client->facts();
    found.cpuSeconds = last && firstFacts ? last->cpuSeconds - firstFacts->cpuSeconds : 0;
    found.kept = tally.kept(sandbox::monotonicMilliseconds());
    sandbox::layOutClientFaults(client->folders(), phase,
                                sandbox::readFaults(Json::parse(lostBefore), {}));
    found.hostExit = client->stop();
    found.delayedMoves = client->delayedMoves();
    found.leftInUpdate = filesIn(client->folders().client() / "update");
    for (const Json& line : sandbox::readFaultLog(client->folders().faults())) {
        ++found.clientFaults[line.value("fault", "") + " on " + line.value("on", "")];
    }
    found.isWindows = order.windows;
    found.done = tally.done();
    found.failures = tally.failures();
    found.packets = supply.packets();
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
    const std::vector<sandbox::Fault> all =
        sandbox::readFaults(Json::parse(faults), {"core", "base", "first", "second", "held"});
    sandbox::layOutClientFaults(client->folders(), phase, all);
    sandbox::ExpectedUpgrade expected;
    expected.versions = supply.clientVersions();
    platform.beginRun(offer, {}, supply.upgrade(), expected,
                      {all, [this](const sandbox::Fault& fault, std::size_t /*attempt*/) {
                           const std::lock_guard lock(guard);
                           ++met[fault.title()];
                       }});
}

std::string Soak::faultsNow() const {
    Json faults = Json::parse(isOn ? programme()[turn].faults : "[]");
    for (const Json& fault : Json::parse(fileFaults())) {
        faults.push_back(fault);
    }
    return faults.dump();
}

/// The file channel has three attempts a process, and rests behind a success. An answer that is
/// no JSON spends none: what is left of the time goes by with such ones, on each log-in.
const char* Soak::fileFaults() const {
    const std::size_t attempts = tally.lines("update plugin, file, check finished, succ:");
    const double share = elapsed() / static_cast<double>(order.length.count());
    if (share > 0.75) {
        return R"([{"on":"patchlib0.dat","fault":"broken","byte":1000}])";
    }
    if (share > 0.5 && attempts < 2) {
        return R"([{"on":"fileCheck","fault":"other-shape"}])";
    }
    if (share > 0.05 && attempts < 1) {
        return R"([{"on":"fileCheck","fault":"status","status":503}])";
    }
    return R"([{"on":"fileCheck","fault":"not-json"}])";
}

void Soak::followTurns() {
    if (isOn && elapsed() >= turnOff) {
        end(programme()[turn]);
    } else if (!isOn && elapsed() >= nextTurn) {
        turn = (turn + 1) % programme().size();
        begin(programme()[turn]);
    }
}

void Soak::begin(const Turn& now) {
    ++found.turns;
    isOn = true;
    turnOff = elapsed() + secondsOn;
    if (hasPackage() || now.setupFails) {
        supply.nextPackage(now.setupFails);
    }
    if (const auto words = wordsOf(now.set); !words.empty()) {
        client->set(words);
    }
    if (*now.held != '\0') {
        client->hold(now.held);
    }
    if (*now.words != '\0') {
        client->beginUi(now.words);
    }
}

void Soak::end(const Turn& now) {
    isOn = false;
    hasMuted = false;
    nextTurn = elapsed() + secondsOff;
    client->letGo();
    platform.release();
    if (now.setupFails) {
        supply.nextPackage(false);
    }
    std::vector<std::string> words = wordsOf(now.unset);
    words.emplace_back("login=off"); // what a log-in sets off comes once a turn
    client->set(words);
    logIn = elapsed() + loginSeconds;
    wordsAfterLogIn = now.wordsOff;
}

void Soak::logInAgain() {
    if (logIn && elapsed() >= *logIn) {
        logIn.reset();
        client->set({"login=on"});
        if (!wordsAfterLogIn.empty()) {
            client->beginUi(wordsAfterLogIn);
        }
    }
}

/// Mute mode between a download and its install: the install ends its chain without an end.
void Soak::muteHeldInstall() {
    if (isOn && programme()[turn].mutesInstall && !hasMuted && platform.isHeld()) {
        hasMuted = true;
        client->set({"muteMode=1"});
        platform.release();
    }
}

void Soak::sample() {
    if (elapsed() < nextSample) {
        return;
    }
    const double all = static_cast<double>(order.length.count());
    nextSample += std::min(sampleSeconds, all / fewestSamples);
    const auto facts = client->facts();
    if (!facts) {
        throw std::runtime_error("the host has ended by itself, see " +
                                 (client->folders().state() / "host1.out").string());
    }
    firstFacts = firstFacts ? firstFacts : facts;
    const Kept kept = tally.kept(sandbox::monotonicMilliseconds());
    const double at = elapsed();
    const Cost& cost = order.windows ? wineCost : nativeCost;
    found.memory.push_back({at, facts->memory, cost.kilobytes(kept)});
    found.threads.push_back({at, facts->threads, kept.threads()});
    found.handles.push_back({at, facts->handles, cost.handles(kept)});
    std::ofstream(order.folder / "samples.csv", std::ios::app)
        << at << ',' << facts->memory << ',' << facts->resident << ',' << facts->threads << ','
        << facts->handles << ',' << facts->cpuSeconds << ',' << kept.chains << ',' << kept.retries
        << ',' << (isOn ? programme()[turn].name : "") << '\n';
}

void Soak::watch(const sandbox::PlatformEvent& event) {
    if (event.kind == sandbox::PlatformEvent::Kind::packageCheck) {
        const std::lock_guard lock(guard);
        clientVersion = event.detail.substr(0, event.detail.find_first_of(" ,"));
    }
}

} // namespace soak
