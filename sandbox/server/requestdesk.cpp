#include "sandbox/server/requestdesk.h"

#include "sandbox/server/connection.h"
#include "sandbox/server/sending.h"
#include "sandbox/server/upgrademessages.h"
#include "sandbox/server/wirefaults.h"

namespace sandbox {
namespace {

constexpr const char* jsonType = "application/json";
constexpr const char* fileType = "application/octet-stream";
constexpr int httpOk = 200;

Headers headersOf(const httplib::Request& request) {
    return {request.headers.begin(), request.headers.end()};
}

/// What faults call the request of the upgrade server.
std::string upgradeName(const httplib::Request& request) {
    return request.target == packageCheckPath ? "packageCheck" : "fileCheck";
}

} // namespace

void RequestDesk::beginRun(const Offer& offer, const ExpectedRun& run,
                           const UpgradeOffer& upgradeOffer, const ExpectedUpgrade& expected,
                           RunFaults runFaults) {
    const std::lock_guard lock(guard);
    gate.shut();
    kelvar.beginRun(offer, run);
    upgrade.beginRun(upgradeOffer, expected);
    faults.beginRun(std::move(runFaults));
    complaints.clear();
    running = true;
}

RunReport RequestDesk::endRun() {
    gate.open();
    const std::lock_guard lock(guard);
    kelvar.endRun();
    for (const std::string& title : faults.missed()) {
        complain("the fault " + title + " never took effect");
    }
    running = false;
    return {kelvar.questions(), kelvar.downloads(), upgrade.report(), complaints};
}

void RequestDesk::stopJudging() {
    const std::lock_guard lock(guard);
    judging = false;
}

void RequestDesk::stop() {
    stopping = true;
    gate.open();
}

void RequestDesk::tell(const PlatformEvent& event) {
    if (observer) {
        observer(event);
    }
}

void RequestDesk::complain(const std::string& text) {
    if (!judging) {
        return;
    }
    complaints.push_back(text);
    tell({PlatformEvent::Kind::complaint, text, "", 0, 0});
}

void RequestDesk::checkRunning(const httplib::Request& request) {
    if (!running) {
        complain(request.method + " " + request.target + ": asked while no run was under way");
    }
}

void RequestDesk::refuse(const httplib::Request& request, httplib::Response& response) {
    const std::lock_guard lock(guard);
    if (!kelvar.hasLost()) { // an address of a faulty answer may be any
        complain(request.method + " " + request.target + ": nothing is there");
    }
    response.status = 404;
    response.set_content("not found", "text/plain");
}

void RequestDesk::post(const httplib::Request& request, httplib::Response& response) {
    const auto question = KelvarServer::questionOf(request.target);
    const bool isUpgrade = request.target == packageCheckPath || request.target == fileCheckPath;
    if (!question && !isUpgrade) {
        refuse(request, response);
        return;
    }
    Answer right{httpOk, jsonType, ""};
    std::optional<ServerFaults::Met> met;
    {
        const std::lock_guard lock(guard);
        checkRunning(request);
        right.body = question ? answerQuestion(*question, request) : answerUpgrade(request);
        met = faults.next(question ? std::string(conversation[*question].name)
                                   : upgradeName(request));
    }
    if (!met || !sendFaulty(*met, right, {})) {
        response.set_content(right.body, jsonType);
    }
}

std::string RequestDesk::answerQuestion(std::size_t question, const httplib::Request& request) {
    std::string right = kelvar.answer(question, headersOf(request), request.body, address());
    tell({PlatformEvent::Kind::question, std::string(conversation[question].name),
          kelvar.wordsOf(question), 0, 0});
    return right;
}

std::string RequestDesk::answerUpgrade(const httplib::Request& request) {
    const bool isPackage = request.target == packageCheckPath;
    const Headers headers = headersOf(request);
    std::string words;
    std::string right = isPackage ? upgrade.checkPackage(headers, request.body, address(), words)
                                  : upgrade.checkFiles(headers, request.body, address(), words);
    tell({isPackage ? PlatformEvent::Kind::packageCheck : PlatformEvent::Kind::fileCheck, "", words,
          0, 0});
    return right;
}

void RequestDesk::get(const httplib::Request& request, httplib::Response& response) {
    const std::string ofUpgrade = UpgradeServer::fileIdOf(request.target);
    const std::string id = ofUpgrade.empty() ? materialIdOf(request) : ofUpgrade;
    const auto file = id.empty() ? nullptr : std::make_shared<StoredFile>(storageFolder + "/" + id);
    if (!file || !file->isOpen()) {
        refuse(request, response);
        return;
    }
    std::optional<ServerFaults::Met> met;
    {
        const std::lock_guard lock(guard);
        checkRunning(request);
        met = faults.next(fetch(id, !ofUpgrade.empty(), headersOf(request)));
        tell({PlatformEvent::Kind::transfer, id, "", 0, file->size()});
    }
    send(id, file, met, response);
}

/// Takes the request; what the scenario calls the file.
std::string RequestDesk::fetch(const std::string& id, bool isOfUpgrade, const Headers& headers) {
    if (isOfUpgrade) {
        upgrade.fetch(id, headers);
        return upgrade.nameOf(id);
    }
    kelvar.fetch(id, headers);
    return kelvar.nameOf(id);
}

std::string RequestDesk::materialIdOf(const httplib::Request& request) {
    const std::lock_guard lock(guard);
    return kelvar.fileIdOf(request.target);
}

void RequestDesk::send(const std::string& id, const std::shared_ptr<StoredFile>& file,
                       const std::optional<ServerFaults::Met>& met, httplib::Response& response) {
    const auto told = [this, id, total = file->size()](std::uint64_t sent) {
        const std::lock_guard lock(guard);
        tell({PlatformEvent::Kind::transfer, id, "", sent, total});
    };
    const bool isSent =
        met && sendFaulty(*met, {httpOk, fileType, file->read(0, file->size())}, told);
    if (!isSent && file->size() > 0) {
        sendFile(file, told, response);
    }
}

/// False, with nothing sent, when the fault cannot come about with that answer.
bool RequestDesk::sendFaulty(const ServerFaults::Met& met, const Answer& right, const Told& told) {
    const auto answer = spoilt(met.fault, right);
    if (!answer) {
        return false;
    }
    const Gate::Ticket ticket = takeEffect(met);
    const bool isFile = right.type == fileType && answer->status == httpOk;
    sendWithFault(met.fault, *answer, {isFile ? told : nullptr, gate, ticket, stopping},
                  Connection::current());
    return true;
}

/// The gate's ticket of this run.
Gate::Ticket RequestDesk::takeEffect(const ServerFaults::Met& met) {
    const std::lock_guard lock(guard);
    faults.tookEffect(met);
    if (!met.fault.kind().keepsAnswer && KelvarServer::questionNamed(met.fault.on)) {
        kelvar.loseConversation();
    }
    tell({PlatformEvent::Kind::fault, met.fault.on + ": " + met.fault.words(), "", 0, 0});
    return gate.ticket();
}

} // namespace sandbox
