#include <condition_variable>
#include <gtest/gtest.h>
#include <mutex>

#include "host/xnbase.h"
#include "httpserver.h"
#include "moduleslab.h"

namespace {

constexpr int timedOut = 28; // libcurl's numbers
constexpr int refused = 7;
constexpr int badAddress = 3;

class Receiver : public xnhttp::Callback {
public:
    long addRef() override {
        const std::lock_guard guard(mutex);
        return ++references;
    }
    long release() override {
        const std::lock_guard guard(mutex);
        released.notify_all();
        return --references;
    }
    void onResponse(xnhttp::Response* response) override {
        ++calls;
        error = response->error();
        status = response->status();
        body.assign(response->body(), response->size());
    }
    /// Blocks until the facility has let go of the object.
    void awaitRelease() {
        std::unique_lock lock(mutex);
        released.wait(lock, [this] { return references == 0; });
    }

    int calls = 0;
    int error = -1;
    int status = -1;
    std::string body;

private:
    std::mutex mutex;
    std::condition_variable released;
    long references = 0;
};

/// Posts "data"; the answer has been dealt with when this returns.
void send(const std::string& url, Receiver& receiver) {
    auto* header = lab::bind<xnbase::newRequestHeader>(L"xnbase.dll", "newRequestHeader")();
    void* request = lab::bind<xnbase::newRequest>(L"xnbase.dll", "newRequest")(header, "data", 4);
    const auto http = lab::bind<xnbase::asyncHttp>(L"xnbase.dll", "asyncHttp");
    http(xnhttp::methodPost, url.c_str(), request, &receiver);
    receiver.awaitRelease();
}

TEST(ModuleHttp, AnswersOnceWhateverHappens) {
    HttpServer server;
    const struct {
        std::string url;
        int error;
        int status;
        std::string body;
    } rows[] = {{server.url("/echo"), 0, 200, std::string("[\0data]", 7)},
                {server.url("/absent"), 0, 404, ""},
                {server.url("/hang"), timedOut, 0, ""},
                {"http://127.0.0.1:1/", refused, 0, ""},
                {"", badAddress, 0, ""}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.url);
        const lab::Events ofRow;
        Receiver taker;
        send(row.url, taker);
        EXPECT_EQ(taker.calls, 1);
        EXPECT_EQ(taker.error, row.error);
        EXPECT_EQ(taker.status, row.status);
        EXPECT_EQ(taker.body, row.body);
        ASSERT_EQ(ofRow.of("http").size(), 2U);
        EXPECT_EQ(ofRow.of("http")[0]["size"], 4);
        EXPECT_EQ(ofRow.of("http")[1]["error"], row.error);
    }
}

TEST(ModuleHttp, WhatLeavesACallbackIsAFailureOfTheRun) {
    struct Thrower final : Receiver {
        void onResponse(xnhttp::Response* /*response*/) override {
            throw std::runtime_error("thrown over the border of two modules");
        }
    };
    HttpServer server;
    const lab::Events events;
    Thrower thrower;
    send(server.url("/echo"), thrower);
    ASSERT_EQ(events.of("failure").size(), 1U);
    EXPECT_EQ(events.of("failure")[0]["text"], "thrown over the border of two modules");
}

} // namespace
