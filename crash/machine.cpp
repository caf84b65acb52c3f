#include "crash/machine.h"

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <exception>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/files.h"
#include "sandbox/platform/delayed.h"
#include "sandbox/server/answers.h"
#include "support/immortal.h"
#include "updatekelvar/xupdatekelvar.h"

namespace crash {

namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr int diedOfException = 78;
constexpr unsigned sessionSeconds = 60;
constexpr std::uint32_t betweenSessions = 100'000; ///< more than every gate asks for

// What the exports of the client's modules give; there is one machine a process.
DurableSettings* theSettings = nullptr;
DurableVersions* theVersions = nullptr;

IKeyValueStore* giveSettings() {
    return lookUpStore() ? theSettings : nullptr;
}
IFileVersionStore* giveVersions() {
    return theVersions;
}

void runKelvar(FakeHost& host) {
    auto& channel = immortal<XUpdateKelvar>();
    channel.init();
    fake::advance(betweenSessions / 2);
    channel.checkUpdate();
    host.awaitLog("update plugin, queue, run end.");
}

} // namespace

Machine::Machine(const Packet& packet)
    : content(packet), settings(storesFile()), versions(storesFile()), sessionWork(runKelvar) {
    theSettings = &settings;
    theVersions = &versions;
    fake::setExecutable(host.clientPath("client\\trayhost.exe"));
    fake::addExport(L"XNSetting.dll", "GetKV", reinterpret_cast<void*>(giveSettings));
    fake::addExport(L"xnbase.dll", "getFileVer", reinterpret_cast<void*>(giveVersions));
    host.homeDirectory = host.clientPath("home");
    host.onTransfer = [this](const std::string& url) {
        const auto found = content.storage.find(url.substr(url.rfind('/') + 1));
        return found == content.storage.end() ? FakeHost::Transfer{22, ""}
                                              : FakeHost::Transfer{0, found->second};
    };
    fake::setWaits(fake::Waits::immediate);
}

void Machine::layOut() {
    held.clear();
    failedMoves.clear();
    sessions = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(host.folder)) {
        fs::remove_all(entry.path());
    }
    fs::create_directories(file("update\\temp"));
    for (const auto& [path, bytes] : content.files) {
        host.has("client\\" + path, bytes);
    }
    writeStores(storesFile(), content.stored);
    writeFileList();
    begin({});
    for (const auto& [from, to] : content.delayed) {
        const std::string target = host.clientPath("client\\" + to);
        platform::moveFile(host.clientPath("client\\" + from), target.c_str(),
                           platform::moveReplaceExisting | platform::moveDelayUntilReboot);
    }
    for (const std::string& path : content.held) {
        held.push_back(std::make_unique<sandbox::HeldFile>(file(path)));
    }
}

void Machine::restart() {
    held.clear();
    const auto failures = sandbox::carryOutMoves(host.folder / "client");
    failedMoves.insert(failedMoves.end(), failures.begin(), failures.end());
}

void Machine::restartIfAsked() {
    if (!sandbox::pendingMoves(host.folder / "client").empty()) {
        restart();
    }
}

Session Machine::run(Plan plan) {
    const Started started = start(std::move(plan));
    return await(started);
}

Machine::Started Machine::start(Plan plan) {
    const std::size_t number = sessions++;
    tick += betweenSessions;
    const pid_t child = ::fork();
    if (child < 0) {
        throw std::runtime_error("no process for a session");
    }
    if (child == 0) {
        live(std::move(plan), number);
    }
    return {child, number};
}

Session Machine::await(const Started& started) const {
    int status = 0;
    if (::waitpid(started.process, &status, 0) != started.process) {
        return {};
    }
    return readReport(status, started.number);
}

Machine::Pair Machine::runBeside(std::size_t at) {
    std::array<int, 2> arrived{};
    std::array<int, 2> goOn{};
    if (::pipe(arrived.data()) != 0 || ::pipe(goOn.data()) != 0) {
        throw std::runtime_error("no pipe to a session");
    }
    char byte = 0;
    const Started first =
        start({.disturbance = Disturbance::otherHost, .at = at, .visitor = [&] {
                   if (::write(arrived[1], "x", 1) != 1 || ::read(goOn[0], &byte, 1) != 1) {
                       ::_exit(EXIT_FAILURE);
                   }
               }});
    ::close(arrived[1]);
    Pair sessionsOfBoth;
    if (::read(arrived[0], &byte, 1) == 1) {
        sessionsOfBoth.second = run();
        if (::write(goOn[1], "x", 1) != 1) {
            ::kill(first.process, SIGKILL); // it would wait for its alarm
        }
    }
    sessionsOfBoth.first = await(first);
    for (const int descriptor : {arrived[0], goOn[0], goOn[1]}) {
        ::close(descriptor);
    }
    return sessionsOfBoth;
}

void Machine::live(Plan plan, std::size_t number) {
    ::alarm(sessionSeconds); // nothing waits for it but a session that hangs
    std::set_terminate([] { ::_exit(diedOfException); });
    if (plan.disturbance == Disturbance::clockSetBack) {
        plan.visitor = [] {
            fake::setTick(0);
        };
    }
    plan.atDeath = [this, number] {
        report(number);
    };
    fake::setTick(tick);
    answerFor(stored());
    begin(std::move(plan));
    sessionWork(host);
    report(number);
    ::_exit(EXIT_SUCCESS);
}

/// A platform that has nothing new for who has the packet's version.
void Machine::answerFor(const Stored& stored) {
    sandbox::Offer offer = content.offer;
    const auto version = stored.versions.find(versionKey);
    if (version != stored.versions.end() && version->second == offer.version) {
        offer.modules.clear();
        offer.materials.clear();
    }
    constexpr std::array questions{"GetUpgradePacket", "GetFullPacketDiff", "GetPacketMeta",
                                   "GetFileStorageAddr", "BatchGetMaterialMeta"};
    for (std::size_t i = 0; i < questions.size(); ++i) {
        host.answers[questions[i]] = {0, 200,
                                      sandbox::answerTo(i, offer, {}, "http://platform.test")};
    }
}

void Machine::report(std::size_t number) const {
    Json all;
    for (const Step& step : countedSteps()) {
        all["steps"].push_back(Json::array({static_cast<int>(step.operation), step.what}));
    }
    for (const auto& [program, parameters] : host.startedPrograms) {
        all["programs"].push_back(std::string(program.begin(), program.end()));
    }
    for (const FakeHost::LogLine& line : host.log()) {
        all["log"].push_back(line.text);
    }
    all["lookups"] = storeLookups();
    // A line of the log is whatever a server has sent.
    std::ofstream(reportFile(number)) << all.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Session Machine::readReport(int status, std::size_t number) const {
    Session session;
    const int code = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    session.end = code == EXIT_SUCCESS      ? End::itself
                  : code == diedAsPlanned   ? End::asPlanned
                  : code == diedOfException ? End::exception
                                            : End::other;
    std::ifstream stream(reportFile(number));
    const Json all = stream ? Json::parse(stream) : Json::object();
    for (const Json& step : all.value("steps", Json::array())) {
        session.steps.push_back(
            {static_cast<Operation>(step.at(0).get<int>()), step.at(1).get<std::string>()});
    }
    session.programs = all.value("programs", session.programs);
    session.log = all.value("log", session.log);
    session.storeLookups = all.value("lookups", session.storeLookups);
    return session;
}

} // namespace crash
