// The least xnbase.dll with which the plug-in asks the update platform: log, address, HTTP.
// useServer and runningChains are between this module and its host, host.cpp.
#include <atomic>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include <curl/curl.h>

#include "host/xnhttp.h"

namespace {

std::atomic<int> chains{0}; // that run now, counted by their log lines

struct Environment final : IXEnvConfig {
    const char* upgradeAddress() override { return address.c_str(); }
    void reserved1() override {}
    void reserved2() override {}
    void reserved3() override {}
    void reserved4() override {}
    const char* serverAddress() override { return address.c_str(); }
    std::string address; // set before the plug-in starts
} environment;

struct Answer final : xnhttp::Response {
    void reserved0() override {}
    void reserved1() override {}
    void reserved2() override {}
    int error() override { return failure; }
    int status() override { return static_cast<int>(code); }
    const char* body() override { return text.data(); }
    std::size_t size() override { return text.size(); }
    CURLcode failure = CURLE_OK;
    long code = 0;
    std::string text;
};

std::size_t append(char* data, std::size_t size, std::size_t count, void* text) {
    static_cast<std::string*>(text)->append(data, size * count);
    return size * count;
}

void post(const char* url, const std::string& body, Answer& answer) {
    CURL* const transfer = curl_easy_init();
    curl_slist* const headers = curl_slist_append(nullptr, "Content-Type: application/json");
    curl_easy_setopt(transfer, CURLOPT_URL, url);
    curl_easy_setopt(transfer, CURLOPT_HTTPHEADER, headers);
    curl_easy_setopt(transfer, CURLOPT_POSTFIELDS, body.c_str());
    curl_easy_setopt(transfer, CURLOPT_WRITEFUNCTION, append);
    curl_easy_setopt(transfer, CURLOPT_WRITEDATA, &answer.text);
    curl_easy_setopt(transfer, CURLOPT_TIMEOUT, 20L); // the plug-in has none of its own
    curl_easy_setopt(transfer, CURLOPT_NOSIGNAL, 1L);
    answer.failure = curl_easy_perform(transfer);
    curl_easy_getinfo(transfer, CURLINFO_RESPONSE_CODE, &answer.code);
    curl_slist_free_all(headers);
    curl_easy_cleanup(transfer);
}

} // namespace

extern "C" void writeLog(int level, const char*, int, const char* function, const char* text,
                         std::size_t length) {
    const std::string_view line(text, length);
    chains += line.starts_with("update plugin, queue, run ...") ? 1 : 0;
    chains -= line.starts_with("update plugin, queue, run end.") ? 1 : 0;
    std::printf("%d %s: %s\n", level, function, text);
}

extern "C" IXEnvConfig* envConfigInstance() {
    return &environment;
}

extern "C" void* newRequest(IXHttpHeader*, const char* body, std::size_t length) {
    return new std::string(body, length);
}

/// Answers within the call, on the thread of the chain: allowed, and the least.
extern "C" void asyncHttp(int, const char* url, void* request, xnhttp::Callback* callback) {
    callback->addRef(); // before all else: the plug-in holds no reference of its own
    const std::unique_ptr<std::string> body(static_cast<std::string*>(request));
    Answer answer;
    post(url, *body, answer);
    callback->onResponse(&answer); // the rest of the chain runs in here
    callback->release();
}

extern "C" void useServer(const char* address) {
    environment.address = address;
}

extern "C" int runningChains() {
    return chains;
}
