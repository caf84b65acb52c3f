#include "bench/client/delivery.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

namespace bench {
namespace {

class Answer final : public xnhttp::Response {
public:
    void reserved0() override {}
    void reserved1() override {}
    void reserved2() override {}
    int error() override { return code; }
    int status() override { return static_cast<int>(httpStatus); }
    const char* body() override { return text.data(); }
    std::size_t size() override { return text.size(); }

    CURLcode code = CURLE_OK;
    long httpStatus = 0;
    std::string text;
};

std::size_t collect(char* data, std::size_t size, std::size_t count, void* text) {
    static_cast<std::string*>(text)->append(data, size * count);
    return size * count;
}

void ask(const Request& request, Answer& answer) {
    CURL* const handle = curl_easy_init();
    curl_easy_setopt(handle, CURLOPT_URL, request.url.c_str());
    curl_easy_setopt(handle, CURLOPT_NOPROXY, "*"); // the server is on loopback
    curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
    curl_easy_setopt(handle, CURLOPT_HTTPHEADER, request.headers);
    curl_easy_setopt(handle, CURLOPT_POSTFIELDSIZE_LARGE,
                     static_cast<curl_off_t>(request.body.size()));
    curl_easy_setopt(handle, CURLOPT_POSTFIELDS, request.body.c_str());
    curl_easy_setopt(handle, CURLOPT_WRITEFUNCTION, &collect);
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, &answer.text);
    answer.code = curl_easy_perform(handle);
    curl_easy_getinfo(handle, CURLINFO_RESPONSE_CODE, &answer.httpStatus);
    curl_easy_cleanup(handle);
}

/// The delivery thread with its queue; lives as long as the process.
class Delivery {
public:
    Delivery() {
        std::thread([this] { loop(); }).detach();
    }

    void post(std::unique_ptr<Request> request, xnhttp::Callback* callback) {
        const std::lock_guard lock(mutex);
        jobs.push_back({std::move(request), callback});
        posted.notify_one();
    }

private:
    struct Job {
        std::unique_ptr<Request> request;
        xnhttp::Callback* callback;
    };

    Job take() {
        std::unique_lock lock(mutex);
        posted.wait(lock, [this] { return !jobs.empty(); });
        Job job = std::move(jobs.front());
        jobs.pop_front();
        return job;
    }

    void loop() {
        for (;;) {
            const Job job = take();
            Answer answer;
            ask(*job.request, answer);
            job.callback->onResponse(&answer);
            job.callback->release();
        }
    }

    std::mutex mutex;
    std::condition_variable posted;
    std::deque<Job> jobs;
};

} // namespace

void deliver(std::unique_ptr<Request> request, xnhttp::Callback* callback) {
    static Delivery& delivery = *new Delivery;
    delivery.post(std::move(request), callback);
}

} // namespace bench
