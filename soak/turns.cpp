#include <iterator>
#include <nlohmann/json.hpp>
#include <sstream>

#include "soak/soak.h"

// What the soak switches on and off, and what goes with it.

namespace soak {
namespace {

using Json = nlohmann::json;

constexpr double secondsOn = 5;
constexpr double secondsOff = 5;
constexpr double loginSeconds = 1;

std::vector<std::string> wordsOf(const std::string& text) {
    std::istringstream stream(text);
    return {std::istream_iterator<std::string>(stream), {}};
}

} // namespace

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
    installsBefore = tally.installs();
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
        failedSetups += tally.installs() - installsBefore;
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

} // namespace soak
