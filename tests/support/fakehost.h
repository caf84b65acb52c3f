#pragma once

#include <condition_variable>
#include <filesystem>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

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
        int method;
        std::string url;
        std::vector<std::pair<std::string, std::string>> headers;
        std::string body;
    };
    struct Answer {
        int error = 0;
        int status = 200;
        std::string body;
    };
    struct Transfer {
        int code = 0; ///< of curl_easy_perform
        std::string body;
        std::size_t chunk = 4096; ///< bytes a call of the write function
    };

    FakeHost();
    ~FakeHost();
    FakeHost(const FakeHost&) = delete;
    FakeHost& operator=(const FakeHost&) = delete;
    static FakeHost& current();

    // --- what is there ---

    void without(const std::wstring& module) { fake::removeModule(module); }
    void without(const std::wstring& module, const std::string& name) {
        fake::removeExport(module, name);
    }
    void withoutId(const std::wstring& moduleId) { absentIds.insert(moduleId); }
    std::set<std::wstring> badSignatures; ///< modules that loadXNLibrary refuses with -2
    std::set<std::wstring> absentIds;

    // --- the client folder ---

    /// The application folder, as the system and as the client spell it.
    const std::filesystem::path folder;
    std::string clientFolder() const;
    std::string clientPath(const std::string& relative) const {
        return clientFolder() + "\\" + relative;
    }
    std::filesystem::path diskPath(const std::string& relative) const;
    void has(const std::string& relative, const std::string& bytes) const;
    void has(const std::string& relative, const materials::Bytes& bytes) const {
        has(relative, std::string(bytes.begin(), bytes.end()));
    }
    bool exists(const std::string& relative) const;
    std::string bytesOf(const std::string& relative) const;

    // --- services ---

    FakeSettings settings;
    FakeVersions versions;
    FakeUserCenter user;
    FakeNotifications notifications;
    std::string homeDirectory; ///< client path; empty: there is none
    int muteMode = 0;
    std::string channelType = "tulsar_upgrade_1.0";
    std::set<std::wstring> openWindows;
    XOsVersionRecord osVersion{sizeof(XOsVersionRecord), 10, 0, 19045, {}};
    std::vector<std::pair<std::wstring, std::wstring>> startedPrograms;
    std::vector<std::vector<std::string>> events;

    // --- HTTP ---

    /// Answers a request; called at once, or on a thread of its own when `onThread`.
    std::function<Answer(const Request&)> onRequest;
    bool onThread = false;
    const char* serverAddress = "http://kelvar.test";
    const char* upgradeAddress = "http://upgrade.test";
    std::vector<Request> requests;

    /// Answers a transfer of the libcurl service.
    std::function<Transfer(const std::string& url)> onTransfer;
    std::vector<std::string> transfers;              ///< URLs
    std::vector<std::pair<int, long>> numberOptions; ///< options set to a number

    // --- the log ---

    std::vector<LogLine> log() const;
    void addLog(LogLine line);
    std::size_t count(const std::string& text) const; ///< lines that hold `text`
    bool logged(const std::string& text) const { return count(text) > 0; }
    LogLine lineWith(const std::string& text) const;
    /// Blocks until that many lines hold `text`.
    void awaitLog(const std::string& text, std::size_t times = 1) const;

    /// Runs a delivery; joined when the host goes.
    void deliver(std::function<void()> call);

private:
    mutable std::mutex mutex;
    mutable std::condition_variable changed;
    std::vector<LogLine> lines;
    std::vector<std::thread> deliveries;
};
