#pragma once

#include <algorithm>
#include <condition_variable>
#include <filesystem>
#include <fstream>
#include <functional>
#include <mutex>
#include <set>
#include <thread>

#include "host/orvobject.h"
#include "sandbox/materials/content.h"
#include "support/fakeprocess.h"
#include "support/fakestores.h"

/// Every service of a healthy client as plain objects, behind the fake modules, with an
/// application folder of its own on the real disk. One at a time. A test says what is
/// different.
class FakeHost {
public:
    struct LogLine {
        int level;
        std::string file;
        int line;
        std::string function;
        std::string text;
    };
    struct Request {
        int method = 0;
        std::string url;
        std::vector<std::pair<std::string, std::string>> headers;
        std::string body;
    };
    struct Answer {
        int error = 0;
        int status = 404;
        std::string body;
    };
    struct Transfer {
        int code = 0; ///< of curl_easy_perform
        std::string body;
        std::size_t chunk = 4096; ///< bytes a call of the write function
    };

    FakeHost();
    ~FakeHost();

    // --- what is there ---

    /// Takes an export away, or a whole module.
    void without(const std::wstring& module, const std::string& name = "") {
        fake::remove(module, name);
    }
    void withoutId(const std::wstring& moduleId) { fake::remove(moduleId); }
    std::set<std::wstring> badSignatures; ///< modules that loadXNLibrary refuses with -2

    // --- the client folder ---

    /// The application folder, as the system and as the client spell it.
    const std::filesystem::path folder;
    std::string clientPath(const std::string& relative) const {
        return respelled(folder.string(), '/', '\\') + "\\" + relative;
    }
    std::filesystem::path diskPath(const std::string& relative) const {
        return folder / respelled(relative, '\\', '/');
    }
    void has(const std::string& relative, const std::string& bytes) const {
        std::filesystem::create_directories(diskPath(relative).parent_path());
        std::ofstream(diskPath(relative), std::ios::binary) << bytes;
    }
    void has(const std::string& relative, const materials::Bytes& bytes) const {
        has(relative, std::string(bytes.begin(), bytes.end()));
    }
    bool exists(const std::string& relative) const {
        return std::filesystem::exists(diskPath(relative));
    }
    std::string bytesOf(const std::string& relative) const {
        std::ifstream file(diskPath(relative), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    // --- services ---

    FakeSettings settings;
    FakeVersions versions;
    FakeUserCenter user;
    FakeNotifications notifications;
    std::string homeDirectory; ///< client path; empty: there is none
    int muteMode = 0;
    std::string channelType = "tulsar_upgrade_1.0";
    std::set<std::wstring> openWindows;
    XOsVersionRecord osVersion{sizeof(XOsVersionRecord), 10, 0, 19045, {}}; ///< none of size 0
    std::vector<std::pair<std::wstring, std::wstring>> startedPrograms;
    std::vector<std::string> events; ///< texts with a blank behind each, "-" for null

    // --- HTTP ---

    std::map<std::string, Answer> answers; ///< by the last element of the path
    bool onThread = false;                 ///< an answer comes on a thread of its own
    const char* serverAddress = "http://kelvar.test";
    const char* upgradeAddress = "http://upgrade.test";
    std::vector<Request> requests;

    /// Answers a transfer of the libcurl service.
    std::function<Transfer(const std::string& url)> onTransfer;
    bool hasHandles = true;
    std::vector<std::string> transfers;              ///< URLs
    std::vector<std::pair<int, long>> numberOptions; ///< options set to a number

    // --- the log ---

    std::vector<LogLine> log() const {
        const std::lock_guard guard(mutex);
        return lines;
    }
    void addLog(LogLine line) {
        const std::lock_guard guard(mutex);
        lines.push_back(std::move(line));
        changed.notify_all();
    }
    /// Lines that hold `text`.
    std::size_t count(const std::string& text) const { return linesWith(text, log()).size(); }
    bool logged(const std::string& text) const { return count(text) > 0; }
    LogLine lineWith(const std::string& text) const {
        const auto found = linesWith(text, log());
        return found.empty() ? LogLine{} : found.front();
    }
    /// Blocks until that many lines hold `text`.
    void awaitLog(const std::string& text, std::size_t times = 1) const {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return linesWith(text, lines).size() >= times; });
    }

    /// Runs a delivery on a thread that is joined when the host goes.
    void deliver(std::function<void()> call) {
        // A delivery may ask for the next one before this call has come back.
        const std::lock_guard guard(deliveryMutex);
        deliveries.emplace_back(std::move(call));
    }
    /// Blocks until the deliveries so far have come back.
    void awaitDeliveries();

private:
    static std::string respelled(std::string path, char from, char to) {
        std::replace(path.begin(), path.end(), from, to);
        return path;
    }
    static std::vector<LogLine> linesWith(const std::string& text, std::vector<LogLine> from) {
        std::erase_if(from, [&](const LogLine& line) { return line.text.find(text) == text.npos; });
        return from;
    }

    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    std::vector<LogLine> lines;
    std::mutex deliveryMutex;
    std::vector<std::thread> deliveries;
};
