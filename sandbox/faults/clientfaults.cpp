#include "sandbox/faults/clientfaults.h"

#include <algorithm>
#include <map>
#include <stdexcept>

#include "sandbox/common/events.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/faults/faultlog.h"
#include "utils/mutex.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

bool holdsAt(const Fault& fault, std::int64_t tick) {
    return (!fault.has("from") || fault.number("from") <= tick) &&
           (!fault.has("until") || tick < fault.number("until"));
}

constexpr const char* chainless = "fileCheck";

/// The end of the path of the request that the fault stands on.
std::string pathEnd(const std::string& on) {
    if (on == "packageCheck") {
        return "/upgrade/check";
    }
    return on == chainless ? "/file/check" : "/" + on;
}

Mutex counting;

std::size_t countRequest(const std::string& url) {
    static std::map<std::string, std::size_t>& counts = *new std::map<std::string, std::size_t>;
    const MutexLock lock(counting);
    return ++counts[url];
}

} // namespace

bool isOfClient(const Fault& fault) {
    return fault.on == "modules" || fault.name == dropFault;
}

void layOutClientFaults(const Folders& folders, std::size_t phase,
                        const std::vector<Fault>& faults) {
    std::vector<Fault> ofClient;
    std::copy_if(faults.begin(), faults.end(), std::back_inserter(ofClient), isOfClient);
    if (ofClient.empty()) {
        std::filesystem::remove(folders.clientFaults());
    } else if (!writeJson(folders.clientFaults(),
                          {{"phase", phase}, {"tick", 0}, {"faults", toJson(ofClient)}})) {
        throw std::runtime_error("cannot write " + folders.clientFaults().string());
    }
}

bool reachTick(const Folders& folders, std::uint32_t tick) {
    const auto stands = readJson(folders.clientFaults());
    if (!stands) {
        return false;
    }
    const Json faults = stands->value("faults", Json::array());
    const bool turns = std::any_of(faults.begin(), faults.end(), [&](const Json& fault) {
        return fault.value("from", -1) == static_cast<std::int64_t>(tick) ||
               fault.value("until", -1) == static_cast<std::int64_t>(tick);
    });
    return turns && updateJson(folders.clientFaults(), [&](Json& json) { json["tick"] = tick; });
}

std::size_t lostChains() {
    const auto stands = readJson(processFolders().clientFaults());
    if (!stands) {
        return 0;
    }
    const std::size_t phase = stands->value("phase", std::size_t{0});
    const std::vector<Json> lines = readFaultLog(processFolders().faults());
    return static_cast<std::size_t>(
        std::count_if(lines.begin(), lines.end(), [phase](const Json& line) {
            return line.value("phase", std::size_t{0}) == phase &&
                   line.value("fault", "") == dropFault && line.value("on", "") != chainless;
        }));
}

ClientFaults ClientFaults::read() {
    ClientFaults now;
    const std::filesystem::path file = processFolders().clientFaults();
    std::error_code error;
    if (!std::filesystem::exists(file, error)) {
        return now;
    }
    guarded("clientfaults.json", [&] {
        const Json json = readJson(file).value_or(Json::object());
        now.phase = json.value("phase", now.phase);
        const auto tick = json.value("tick", std::int64_t{0});
        for (Fault& fault : readFaults(json.value("faults", Json::array()), {})) {
            if (holdsAt(fault, tick)) {
                now.faults.push_back(std::move(fault));
            }
        }
    });
    return now;
}

std::vector<Fault> ClientFaults::all(const std::string& name) const {
    std::vector<Fault> found;
    std::copy_if(faults.begin(), faults.end(), std::back_inserter(found),
                 [&](const Fault& fault) { return fault.name == name; });
    return found;
}

void ClientFaults::met(const Fault& fault) const {
    // A module may be loaded anew for each call, so only the file knows what was logged.
    const std::filesystem::path file = processFolders().faults();
    if (!hasTakenEffect(readFaultLog(file), phase, fault)) {
        logFault(file, phase, fault, 1);
    }
}

bool ClientFaults::meets(const std::string& name) const {
    const std::vector<Fault> now = all(name);
    for (const Fault& fault : now) {
        met(fault);
    }
    return !now.empty();
}

bool ClientFaults::drops(const std::string& url) const {
    if (faults.empty()) {
        return false;
    }
    const std::size_t attempt = countRequest(url);
    for (const Fault& fault : all(dropFault)) {
        if (url.ends_with(pathEnd(fault.on)) && (fault.attempt == 0 || fault.attempt == attempt)) {
            logFault(processFolders().faults(), phase, fault, attempt);
            return true;
        }
    }
    return false;
}

} // namespace sandbox
