#include "sandbox/server/updateplatform.h"

#include <algorithm>
#include <atomic>
#include <httplib.h>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <thread>

#include "sandbox/server/answers.h"
#include "sandbox/server/requests.h"
#include "sandbox/server/storage.h"

namespace sandbox {
namespace {

constexpr const char* jsonType = "application/json";
constexpr std::size_t blockSize = 65536;

std::optional<std::size_t> questionOf(const std::string& path) {
    const auto found =
        std::find_if(conversation.begin(), conversation.end(),
                     [&](const Question& question) { return path == question.path; });
    if (found == conversation.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(found - conversation.begin());
}

std::string wordsOf(std::size_t question, const Offer& offer, const ExpectedRun& run) {
    switch (question) {
    case 0:
        return run.version + " -> " + offer.version;
    case 1:
        return std::to_string(offer.materials.size()) + " materials, " +
               std::to_string(offer.modules.size()) + " modules";
    case 2:
        return "packet " + offer.version;
    case 3:
        return run.testSwitch ? "test storage" : "normal storage";
    default:
        return std::to_string(offer.materials.size()) + " rows";
    }
}

Headers headersOf(const httplib::Request& request) {
    return {request.headers.begin(), request.headers.end()};
}

} // namespace

struct UpdatePlatform::State {
    std::string storageFolder;
    Observer observer;
    httplib::Server server;
    std::thread thread;
    int port = 0;

    std::mutex guard; ///< of all that follows, and held while the observer runs
    bool running = false;
    Offer offer;
    ExpectedRun run;
    RunReport report;

    void tell(const PlatformEvent& event) {
        if (observer) {
            observer(event);
        }
    }

    void complain(const std::string& text) {
        report.complaints.push_back(text);
        tell({PlatformEvent::Kind::complaint, text, "", 0, 0});
    }

    std::string ownAddress() const { return "http://127.0.0.1:" + std::to_string(port); }

    void checkOrder(std::size_t question, const std::string& name) {
        if (!running) {
            complain(name + ": asked while no run was under way");
        } else if (report.questions >= run.questions) {
            complain(name + ": asked after the last question that was expected");
        } else if (question != report.questions) {
            complain(name + ": out of order, expected " +
                     std::string(conversation[report.questions].name));
        }
    }

    void checkRequest(std::size_t question, const std::string& name,
                      const httplib::Request& request) {
        checkOrder(question, name);
        const std::string headers = headerDifference(headersOf(request));
        if (!headers.empty()) {
            complain(name + ": " + headers);
        }
        const std::string body = bodyDifference(expectedBody(question, offer, run), request.body);
        if (!body.empty()) {
            complain(name + ": " + body);
        }
    }

    void answer(std::size_t question, const httplib::Request& request,
                httplib::Response& response) {
        const std::string name(conversation[question].name);
        const std::lock_guard lock(guard);
        checkRequest(question, name, request);
        report.questions = std::max(report.questions, question + 1);
        std::string body = answerTo(question, offer, run, ownAddress());
        const auto fault = run.answerFaults.find(name);
        if (fault != run.answerFaults.end()) {
            response.status = fault->second.status;
            body = fault->second.body.value_or(body);
        }
        tell({PlatformEvent::Kind::question, name, wordsOf(question, offer, run), 0, 0});
        response.set_content(body, jsonType);
    }

    void post(const httplib::Request& request, httplib::Response& response) {
        if (const auto question = questionOf(request.target)) {
            answer(*question, request, response);
        } else {
            refuse(request.method + " " + request.target + ": nothing is there", response);
        }
    }

    void refuse(const std::string& complaint, httplib::Response& response) {
        const std::lock_guard lock(guard);
        complain(complaint);
        response.status = 404;
        response.set_content("not found", "text/plain");
    }

    /// The file id of a storage address; empty when the path is none of this run's.
    std::string fileIdOf(const std::string& path) {
        const std::lock_guard lock(guard);
        const std::string folder = run.testSwitch ? "/storage-test/" : "/storage/";
        const std::string id = path.rfind(folder, 0) == 0 ? path.substr(folder.size()) : "";
        return isPlainName(id) ? id : "";
    }

    /// Told ahead of the bytes: a client that has them all may ask on at once.
    void tellTransfer(const std::string& id, std::uint64_t bytes, std::uint64_t total) {
        const std::lock_guard lock(guard);
        tell({PlatformEvent::Kind::transfer, id, "", bytes, total});
    }

    void sendFile(const std::string& id, const std::shared_ptr<StoredFile>& file,
                  std::uint64_t limit, httplib::Response& response) {
        const auto provide = [this, id, file, limit](std::size_t offset, std::size_t length,
                                                     httplib::DataSink& sink) {
            const std::uint64_t left = limit > offset ? limit - offset : 0;
            const std::string piece = file->read(
                offset, std::min<std::size_t>({length, blockSize, static_cast<std::size_t>(left)}));
            if (piece.empty()) {
                return false;
            }
            tellTransfer(id, offset + piece.size(), file->size());
            return sink.write(piece.data(), piece.size());
        };
        response.set_content_provider(static_cast<std::size_t>(file->size()),
                                      "application/octet-stream", provide);
    }

    void get(const httplib::Request& request, httplib::Response& response) {
        const std::string id = fileIdOf(request.target);
        const auto file =
            id.empty() ? nullptr : std::make_shared<StoredFile>(storageFolder + "/" + id);
        if (!file || !file->isOpen()) {
            refuse("GET " + request.target + ": nothing is there", response);
            return;
        }
        std::uint64_t limit = file->size();
        {
            const std::lock_guard lock(guard);
            if (!running) {
                complain("GET " + request.target + ": fetched while no run was under way");
            }
            const std::string headers = surplusHeaders(headersOf(request));
            if (!headers.empty()) {
                complain("GET " + request.target + ": surplus headers " + headers);
            }
            report.downloads.push_back(id);
            const auto cut = run.cutFiles.find(id);
            limit = cut == run.cutFiles.end() ? limit : cut->second;
            tell({PlatformEvent::Kind::transfer, id, "", 0, file->size()});
        }
        if (file->size() > 0) {
            sendFile(id, file, limit, response);
        }
    }
};

UpdatePlatform::UpdatePlatform(std::string storageFolder, Observer observer)
    : state(std::make_unique<State>()) {
    state->storageFolder = std::move(storageFolder);
    state->observer = std::move(observer);
    httplib::Server& server = state->server;
    server.set_tcp_nodelay(true);
    server.set_keep_alive_timeout(1);
    server.set_keep_alive_max_count(1000);
    server.Post(".*", [this](const httplib::Request& request, httplib::Response& response) {
        state->post(request, response);
    });
    const auto unknown = [this](const httplib::Request& request, httplib::Response& response) {
        state->refuse(request.method + " " + request.target + ": nothing is there", response);
    };
    server.Put(".*", unknown).Patch(".*", unknown).Delete(".*", unknown).Options(".*", unknown);
    server.Get(".*", [this](const httplib::Request& request, httplib::Response& response) {
        state->get(request, response);
    });
}

UpdatePlatform::~UpdatePlatform() {
    state->server.stop();
    if (state->thread.joinable()) {
        state->thread.join();
    }
}

void UpdatePlatform::start() {
    state->port = state->server.bind_to_any_port("127.0.0.1");
    if (state->port <= 0) {
        throw std::runtime_error("the update platform found no port to listen on");
    }
    state->thread = std::thread([this] { state->server.listen_after_bind(); });
    while (!state->server.is_running()) {
        std::this_thread::yield(); // stop() before the loop runs would be lost
    }
}

std::string UpdatePlatform::address() const {
    return state->ownAddress();
}

void UpdatePlatform::beginRun(const Offer& offer, const ExpectedRun& run) {
    const std::lock_guard lock(state->guard);
    state->offer = offer;
    state->run = run;
    state->report = {};
    state->running = true;
}

RunReport UpdatePlatform::endRun() {
    const std::lock_guard lock(state->guard);
    for (std::size_t i = state->report.questions; i < state->run.questions; ++i) {
        state->complain(std::string(conversation[i].name) + ": never asked");
    }
    state->running = false;
    return state->report;
}

} // namespace sandbox
