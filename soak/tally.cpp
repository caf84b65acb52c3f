#include "soak/tally.h"

#include <algorithm>
#include <array>

namespace soak {
namespace {

struct Counted {
    const char* what;
    const char* begin; ///< of a log line, or the kind of another observation
};

constexpr const char* installed = "update plugin, pkg, task install, finished";
constexpr const char* helperRuns = "update plugin, other, task run, check.";
constexpr const char* mutedInstall = "XTaskPkgInstall check isMugeMode return";
constexpr const char* packageAsked = "update plugin, pkg, task check, request:";
constexpr const char* packageAnswered = "update plugin, pkg, task check, succ:";
constexpr const char* fileRetry = "update plugin, file, retry.";
constexpr const char* packetDone = "packet";
constexpr std::int64_t retryWait = 300'000;
constexpr std::size_t mostRetries = 2; ///< of three attempts

constexpr std::array<Counted, 30> counted{{
    {"kelvar: runs behind the gate", "update plugin, kelvar, task fetch, check ..."},
    {"kelvar: questions", "update plugin, kelvar http, request:"},
    {"kelvar: files fetched", "update plugin, kelvar, task download, download name:"},
    {"kelvar and package: transfers that failed", "update plugin, download task, perform err:"},
    {"kelvar: runs that came to the moves", "update plugin, move task, move all file, all:"},
    {"kelvar: files placed or scheduled", "update plugin, kelvar, task move, move:"},
    {"kelvar: files scheduled", "update plugin, move task, set peeding :"},
    {"kelvar: files refused", "update plugin, kelvar, task move, not need move:"},
    {"kelvar: packets done", packetDone},
    {"kelvar: programs asked for", "update plugin, kelvar, exec:"},
    {"package: checks", packageAsked},
    {"package: checks that failed", "update plugin, pkg, task check, response, error :"},
    {"package: downloads", "update plugin, pkg, task download, check ..."},
    {"package: installs", installed},
    {"package: installs refused", "update plugin, pkg, task install, can't install"},
    {installsInMuteMode, mutedInstall},
    {"package: the user's checks", "update plugin, pkg, check version ..."},
    {"package: the user's downloads", "update plugin, pkg, download pkg ..."},
    {"package: the user's installs", "update plugin, pkg, install pkg ..."},
    {cancelsOfTheUser, "update plugin, pkg, cancel download ..."},
    {"file: runs", "update plugin, file, task check ..."},
    {"file: runs without a user", "update plugin, file, can't check, so ignore."},
    {"file: attempts that ended", "update plugin, file, check finished, succ:"},
    {"file: retries", fileRetry},
    {"file: files fetched", "update plugin, file, task download, download name:"},
    {"other: starts of the helper", helperRuns},
    {"statistic: reports", "event"},
    {"all: ticks", "host"},
    {"all: changes of the log-in", "login"},
    {"all: drives in mute mode", "XUpdateMgr doItem isMugeMode return"},
}};

} // namespace

void Tally::see(const nlohmann::json& event) {
    const auto kind = event.value("kind", std::string());
    if (kind == "log") {
        seeLine(event.value("text", std::string()), event.value("t", std::int64_t{0}));
        return;
    }
    ++counts[kind];
    if (kind == "failure") {
        ++caught[event.value("where", std::string()) + ": " + event.value("text", std::string())];
    } else if (kind == "version" && event.value("path", std::string()) == "update\\version.dat") {
        stored = event.value("value", std::string());
        ++counts[packetDone];
    } else if (kind == "host" && event.value("allocated", 0.0) > 0) {
        looked = HeapLook{event.value("n", 0.0), event.value("allocated", 0.0)};
    }
}

void Tally::seeLine(const std::string& text, std::int64_t time) {
    for (const Counted& one : counted) {
        counts[one.begin] += text.starts_with(one.begin) ? 1 : 0;
    }
    if (text.starts_with(packageAnswered)) {
        ++counts[packageAnswered];
    } else if (text.starts_with(fileRetry)) {
        retries.push_back(time);
    }
}

Kept Tally::kept(std::int64_t now, std::size_t spoiled) {
    while (!retries.empty() && now - retries.front() > retryWait) {
        retries.pop_front();
    }
    // A check without an answer and one whose answer is no JSON end alike: never.
    const std::size_t asked = lines(packageAsked);
    const std::size_t open = asked - std::min(asked, lines(packageAnswered));
    const std::size_t helpers = std::min<std::size_t>(lines(helperRuns), 1); // one a process
    return {helpers + lines(mutedInstall) + std::min(open, spoiled),
            std::min(retries.size(), mostRetries)};
}

std::size_t Tally::lines(const std::string& begin) const {
    const auto found = counts.find(begin);
    return found == counts.end() ? 0 : found->second;
}

std::size_t Tally::packetsDone() const {
    return lines(packetDone);
}

std::size_t Tally::installs() const {
    return lines(installed);
}

std::vector<std::pair<std::string, std::size_t>> Tally::done() const {
    std::vector<std::pair<std::string, std::size_t>> all;
    all.reserve(counted.size());
    for (const Counted& one : counted) {
        all.emplace_back(one.what, lines(one.begin));
    }
    return all;
}

} // namespace soak
