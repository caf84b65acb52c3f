#include "sandbox/modules/xnbase/transfers.h"

#include <algorithm>
#include <curl/curl.h>
#include <thread>

#include "sandbox/common/clientpath.h"

namespace sandbox {

namespace {

constexpr std::uint32_t longestTimeout = 0x7FFFFFFF; // what a long holds on every system
constexpr int pollMilliseconds = 60000;              // a new request wakes the poll up

struct ListFree {
    void operator()(curl_slist* list) const { curl_slist_free_all(list); }
};
using HeaderList = std::unique_ptr<curl_slist, ListFree>;

void append(HeaderList& list, const std::string& line) {
    if (curl_slist* longer = curl_slist_append(list.get(), line.c_str())) {
        static_cast<void>(list.release());
        list.reset(longer);
    }
}

/// The request's own headers and none of those that libcurl would add by itself.
HeaderList headerLines(const HttpHeader::Pairs& headers) {
    HeaderList list;
    for (const char* own : {"Accept:", "Content-Type:", "Expect:"}) {
        append(list, own);
    }
    for (const auto& [name, value] : headers) {
        std::string line = name;
        line += value.empty() ? ";" : ": ";
        append(list, line.append(value));
    }
    return list;
}

std::size_t collectBody(char* data, std::size_t size, std::size_t count, void* body) {
    static_cast<std::string*>(body)->append(data, size * count);
    return size * count;
}

} // namespace

struct Transfers::Transfer {
    Transfer(const std::string& url, std::unique_ptr<HttpRequest> sent, std::uint32_t timeoutMs,
             Done receiver)
        : easy(curl_easy_init()), request(std::move(sent)), lines(headerLines(request->headers)),
          done(std::move(receiver)) {
        curl_easy_setopt(easy, CURLOPT_URL, url.c_str());
        curl_easy_setopt(easy, CURLOPT_POST, 1L);
        curl_easy_setopt(easy, CURLOPT_POSTFIELDSIZE_LARGE,
                         static_cast<curl_off_t>(request->body.size()));
        curl_easy_setopt(easy, CURLOPT_POSTFIELDS, request->body.c_str());
        curl_easy_setopt(easy, CURLOPT_HTTPHEADER, lines.get());
        curl_easy_setopt(easy, CURLOPT_WRITEFUNCTION, &collectBody);
        curl_easy_setopt(easy, CURLOPT_WRITEDATA, &answer.body);
        curl_easy_setopt(easy, CURLOPT_TIMEOUT_MS,
                         static_cast<long>(std::min(timeoutMs, longestTimeout)));
        curl_easy_setopt(easy, CURLOPT_NOSIGNAL, 1L);
        curl_easy_setopt(easy, CURLOPT_NOPROXY, "*"); // the servers are on loopback
        curl_easy_setopt(easy, CURLOPT_PRIVATE, this);
    }
    ~Transfer() { curl_easy_cleanup(easy); }
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;

    CURL* easy;
    std::unique_ptr<HttpRequest> request;
    HeaderList lines;
    Done done;
    HttpAnswer answer;
};

Transfers& Transfers::instance() {
    static Transfers& transfers = *new Transfers;
    return transfers;
}

Transfers::Transfers() : multi((curl_global_init(CURL_GLOBAL_DEFAULT), curl_multi_init())) {
    std::thread([this] { loop(); }).detach();
}

void Transfers::post(const std::string& url, std::unique_ptr<HttpRequest> request,
                     std::uint32_t timeoutMs, Done done) {
    auto transfer = std::make_unique<Transfer>(url, std::move(request), timeoutMs, std::move(done));
    ++unanswered;
    {
        MutexLock lock(mutex);
        pending.push_back(std::move(transfer));
    }
    curl_multi_wakeup(multi);
}

void Transfers::loop() {
    while (true) {
        addPending();
        int running = 0;
        curl_multi_perform(multi, &running);
        collectFinished();
        curl_multi_poll(multi, nullptr, 0, pollMilliseconds, nullptr);
    }
}

void Transfers::addPending() {
    std::vector<std::unique_ptr<Transfer>> added;
    {
        MutexLock lock(mutex);
        added.swap(pending);
    }
    for (std::unique_ptr<Transfer>& transfer : added) {
        Transfer* const running = transfer.release(); // finish takes it back
        if (curl_multi_add_handle(multi, running->easy) != CURLM_OK) {
            finish(running, CURLE_FAILED_INIT);
        }
    }
}

void Transfers::collectFinished() {
    int remaining = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi, &remaining)) {
        if (message->msg != CURLMSG_DONE) {
            continue;
        }
        const CURLcode error = message->data.result; // the message goes with its handle
        Transfer* transfer = nullptr;
        curl_easy_getinfo(message->easy_handle, CURLINFO_PRIVATE, &transfer);
        curl_multi_remove_handle(multi, transfer->easy);
        finish(transfer, error);
    }
}

void Transfers::finish(Transfer* transfer, int error) {
    const std::unique_ptr<Transfer> owned(transfer);
    long status = 0;
    curl_easy_getinfo(owned->easy, CURLINFO_RESPONSE_CODE, &status);
    owned->answer.error = error;
    owned->answer.status = static_cast<int>(status);
    owned->done(std::move(owned->answer));
    --unanswered;
}

Worker& deliveryThread() {
    static Worker& thread = *new Worker("asyncHttp callback");
    return thread;
}

} // namespace sandbox
