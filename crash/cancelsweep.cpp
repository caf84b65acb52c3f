#include "crash/cancelsweep.h"

#include <algorithm>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "host/settings.h"
#include "sandbox/materials/content.h"
#include "support/immortal.h"
#include "updatepkg/xupdatepkg.h"
#include "updatepkg/xupdatepkgtrace.h"

namespace crash {

namespace {

using Json = nlohmann::json;

constexpr std::size_t packageSize = 20'000; ///< several transfers to the disk
constexpr const char* place = "update\\setup.exe";
constexpr int downloaded = 3;
constexpr int started = 4;
constexpr int broken = 6;

const std::string& package() {
    static const materials::Bytes bytes = materials::randomBytes(packageSize, 7);
    static const std::string text(bytes.begin(), bytes.end());
    return text;
}

Json offer() {
    return {{"version", "2.0.0.2002"},
            {"packageURL", "http://upgrade.test/setup.exe"},
            {"fileSize", packageSize},
            {"packageMD5", materials::md5Hex({package().begin(), package().end()})}};
}

void command(NC::PackageCode code) {
    NC::PackageRecord record;
    record.code = code;
    FakeNotification notification(NC::packageType, &record);
    XUpdatePkgTrace::instance().onNotification(&notification);
}

/// A channel of a host whose upgrade server has the package.
XUpdatePkg& startChannel(FakeHost& host) {
    Json answer;
    answer["data"]["needUpgrade"] = true;
    answer["data"]["info"] = offer();
    host.answers["check"] = {0, 200, answer.dump()};
    host.onTransfer = [](const std::string&) {
        return FakeHost::Transfer{0, package()};
    };
    auto& channel = immortal<XUpdatePkg>();
    channel.init();
    fake::advance(10'000);
    return channel;
}

void tick(FakeHost& host) {
    startChannel(host).checkUpdate();
    host.awaitLog("update plugin, queue, run end.");
}

void download(FakeHost& host) {
    startChannel(host);
    command(NC::commandDownload);
    host.awaitLog("update plugin, queue, run end.");
}

int statusIn(const Stored& stored) {
    const auto found = stored.texts.find(settingkeys::upgrade);
    const bool isThere = found != stored.texts.end() && !found->second.empty();
    return isThere ? Json::parse(found->second).value("status", 0) : 0;
}

bool isWhole(const Snapshot& at) {
    const auto file = at.files.find(place);
    return file != at.files.end() && file->second == package();
}

/// What the stored status and the setup program owe to the package on the disk.
void lookAtPackage(const Snapshot& at, const Session& session, std::vector<Finding>& findings) {
    const bool whole = isWhole(at);
    const int status = statusIn(at.stored);
    if (whole == (status == broken)) {
        findings.push_back({"the stored status is " + std::to_string(status) + ", the package " +
                                (whole ? "whole" : "not whole"),
                            std::nullopt});
    }
    if (!session.programs.empty() && !whole) {
        findings.push_back({"a setup program was started that is not whole", std::nullopt});
    }
    if (session.end != End::itself) {
        findings.push_back({"the host ended in an unforeseen way", std::nullopt});
    }
}

bool isOfTransfer(const Step& step) {
    return (step.operation == Operation::openToWrite || step.operation == Operation::write) &&
           step.what.ends_with(place);
}

/// Whether bytes are still to come at that step (counted from 1), so that a cancel has to stop
/// them.
bool isMidTransfer(const std::vector<Step>& steps, std::size_t at) {
    const auto behind = steps.begin() + static_cast<std::ptrdiff_t>(at);
    return isOfTransfer(*std::prev(behind)) && std::any_of(behind, steps.end(), isOfTransfer);
}

std::vector<Row> cancelEach(Machine& machine, Machine::Work work, int wantedStatus) {
    const auto session = [&](Plan plan) {
        machine.does(work);
        return machine.run(std::move(plan));
    };
    machine.layOut();
    const Session whole = session({});
    if (whole.end != End::itself || statusIn(machine.stored()) != wantedStatus) {
        throw std::runtime_error("a package does not come where nobody cancels");
    }
    const std::vector<Step>& steps = whole.steps;
    bool wasMidTransfer = false;
    std::vector<Row> rows;
    for (std::size_t at = 1; at <= steps.size(); ++at) {
        machine.layOut();
        Row row{at, Disturbance::cancelled, {}};
        const Session cancelled =
            session({.disturbance = Disturbance::cancelled, .at = at, .visitor = [] {
                         command(NC::commandCancel);
                     }});
        row.step = cancelled.steps.at(at - 1);
        row.step.what = machine.told(row.step.what);
        const Snapshot behind = machine.look();
        if (isMidTransfer(steps, at)) {
            wasMidTransfer = true;
            row.findings = judgeCancel(behind, cancelled);
        }
        lookAtPackage(behind, cancelled, row.findings);
        const Session next = session({});
        lookAtPackage(machine.look(), next, row.findings);
        if (const int status = statusIn(machine.stored()); status != wantedStatus) {
            row.findings.push_back(
                {"the next session ends with status " + std::to_string(status), std::nullopt});
        }
        rows.push_back(std::move(row));
    }
    if (!wasMidTransfer) {
        throw std::runtime_error("no step of a package is one of its transfer");
    }
    return rows;
}

Packet clientOf(const Json& storedOffer) {
    Packet packet;
    packet.name = "package";
    packet.stored.numbers[settingkeys::pkgLastCheckTime] = 1;
    packet.stored.texts[settingkeys::upgrade] = storedOffer.is_null() ? "" : storedOffer.dump();
    return packet;
}

} // namespace

std::vector<Finding> judgeCancel(const Snapshot& at, const Session& session) {
    std::vector<Finding> findings;
    if (statusIn(at.stored) != broken || isWhole(at)) {
        findings.push_back({"the package came in spite of the cancel", std::nullopt});
    }
    if (!session.programs.empty()) {
        findings.push_back({"the setup was started in spite of the cancel", std::nullopt});
    }
    if (std::none_of(session.log.begin(), session.log.end(), [](const std::string& line) {
            return line.find("perform err: 23") != std::string::npos;
        })) {
        findings.push_back({"the transfer did not end by the cancel", std::nullopt});
    }
    return findings;
}

std::vector<Row> cancelSweep() {
    std::vector<Row> rows;
    {
        const Packet packet = clientOf(nullptr);
        Machine machine(packet);
        rows = cancelEach(machine, tick, started);
    }
    Json answered = offer();
    answered["needUpgrade"] = true;
    answered["status"] = 1;
    const Packet packet = clientOf(answered);
    Machine machine(packet);
    const std::vector<Row> more = cancelEach(machine, download, downloaded);
    rows.insert(rows.end(), more.begin(), more.end());
    return rows;
}

} // namespace crash
