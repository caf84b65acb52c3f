#include "soak/client.h"

#include <charconv>
#include <chrono>
#include <fstream>
#include <iterator>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <thread>

#include "sandbox/platform/hostprocess.h"

namespace soak {
namespace {

namespace fs = std::filesystem;
using Json = nlohmann::json;

constexpr const char* interval = "50";
constexpr auto patience = std::chrono::minutes(2); // Wine copies a system first
constexpr auto glance = std::chrono::milliseconds(20);
constexpr const char* uiSeconds = "8";
constexpr const char* keeper = "keeper.exe";
constexpr const char* hostOutput = "host.out";
constexpr const char* showOutput = "show.out";
constexpr const char* handleCounter = "handlecount.exe";

std::string textOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<std::string> hostWords(const fs::path& scenario, bool windows) {
    std::vector<std::string> words{"host", scenario.string(), "--interval", interval, "--json"};
    if (windows) {
        words.emplace_back("--windows");
    }
    return words;
}

} // namespace

Client::Client(fs::path runFolder, const fs::path& scenario, bool isWindows)
    : where(std::move(runFolder)), windows(isWindows),
      system(isWindows ? sandbox::wineSystem(where) : sandbox::nativeSystem(where)),
      hosting(start(hostWords(scenario, isWindows), hostOutput)) {}

Client::Client(fs::path runFolder, const fs::path& scenario, const fs::path& binaries,
               bool isWindows)
    : Client(std::move(runFolder), scenario, isWindows) {
    const auto end = std::chrono::steady_clock::now() + patience;
    while ((host = findHost()) == 0) {
        if (hosting.poll() || std::chrono::steady_clock::now() > end) {
            throw std::runtime_error("no host has come, see " +
                                     (where.root().parent_path() / hostOutput).string());
        }
        std::this_thread::sleep_for(glance);
    }
    if (windows) {
        fs::copy_file(binaries / handleCounter, where.state() / handleCounter);
    }
}

Client::~Client() {
    letGo();
    if (!hosting.poll()) {
        hosting.terminate();
        hosting.wait();
    }
    if (ui) {
        ui->wait(); // it ends with the host
    }
}

sandbox::ChildProcess Client::start(Words words, const char* output) const {
    words.insert(words.end(), {"--folder", where.root().string()});
    const fs::path folder = where.root().parent_path();
    const fs::path program = sandbox::executableFile().parent_path() / "xsandbox";
    auto process = sandbox::ChildProcess::start(program, words, folder, folder / output);
    if (!process) {
        throw std::runtime_error("cannot start " + program.string());
    }
    return std::move(*process);
}

/// 0 while there is none.
long long Client::findHost() const {
    const fs::path program = where.client() / system->programFile("trayhost");
    std::error_code error;
    for (const auto& entry : fs::directory_iterator("/proc", error)) {
        const std::string name = entry.path().filename().string();
        long long id = 0;
        const auto read = std::from_chars(name.data(), name.data() + name.size(), id);
        if (read.ec == std::errc() && system->runs(id, program)) {
            return id;
        }
    }
    return 0;
}

std::optional<Facts> Client::facts() const {
    const fs::path process = fs::path("/proc") / std::to_string(host);
    const auto [exit, handles] = countedHandles(); // first: the host may end meanwhile
    Facts all = factsOf(textOf(process / "stat"), textOf(process / "status"));
    if (all.resident == 0) {
        return std::nullopt;
    }
    all.handles = toldHandles(exit, handles);
    return all;
}

void Client::set(const Words& words) {
    Words all{"set"};
    all.insert(all.end(), words.begin(), words.end());
    if (start(all, "set.out").wait() != 0) {
        throw std::runtime_error("xsandbox set: " + textOf(where.root().parent_path() / "set.out"));
    }
}

void Client::beginUi(const std::string& words) {
    if (!ui) {
        ui = start({"ui", "--do", words, "--limit", uiSeconds}, "ui.out");
    }
}

std::optional<int> Client::endedUi() {
    const auto exit = ui ? ui->poll() : std::nullopt;
    if (exit) {
        ui.reset();
    }
    return exit;
}

sandbox::ChildProcess Client::startHere(const fs::path& program, const Words& words) const {
    const fs::path output = where.root().parent_path() / (program.stem().string() + ".out");
    auto process = system->start(program, words, output);
    if (!process) {
        throw std::runtime_error("cannot start " + program.string());
    }
    return std::move(*process);
}

/// As `toldHandles` takes it.
std::pair<int, std::string> Client::countedHandles() const {
    if (!windows) {
        std::error_code error;
        std::size_t count = 0;
        fs::directory_iterator entry("/proc/" + std::to_string(host) + "/fd", error);
        for (; !error && entry != end(entry); entry.increment(error)) {
            ++count;
        }
        return {error.value(), std::to_string(count)};
    }
    const fs::path file = where.state() / "handles";
    fs::remove(file);
    auto counter =
        startHere(where.state() / handleCounter, {system->spelled(file), "trayhost.exe"});
    const int exit = counter.wait();
    return {exit, textOf(file)};
}

void Client::hold(const std::string& file) {
    holder = startHere(where.client() / keeper, {system->spelled(where.client() / file)});
}

void Client::letGo() {
    if (holder) {
        holder->terminate();
        holder->wait();
        holder.reset();
    }
}

int Client::stop() {
    start({"stop"}, "stop.out").wait();
    const int exit = hosting.wait();
    const int ofHost = told(hostOutput).value(Json::json_pointer("/host/exit"), 0);
    return ofHost != 0 ? ofHost : exit;
}

/// The object that a verb of xsandbox has written; an empty one when it has not come to that.
nlohmann::json Client::told(const char* output) const {
    Json object = Json::parse(textOf(where.root().parent_path() / output), nullptr, false);
    return object.is_object() ? object : Json::object();
}

std::size_t Client::delayedMoves() {
    start({"show", "--json"}, showOutput).wait();
    return told(showOutput).value("moves", Json::array()).size();
}

} // namespace soak
