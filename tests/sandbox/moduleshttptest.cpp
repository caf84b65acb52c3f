#include <condition_variable>
#include <future>
#include <gtest/gtest.h>
#include <map>
#include <mutex>
#include <thread>

#include <httplib.h>

#include "host/orvobject.h"
#include "host/xnbase.h"
#include "moduleslab.h"
#include "sandbox/modules/xnbase/listener.h"

namespace {

constexpr int timedOut = 28; // libcurl's numbers
constexpr int refused = 7;
constexpr int badArgument = 43;

class Server {
public:
    Server() {
        http.Post("/echo", [this](const httplib::Request& request, httplib::Response& response) {
            headers.insert(request.headers.begin(), request.headers.end());
            response.set_content(std::string("[\0", 2) + request.body + ']', "text/plain");
        });
        http.Post("/hang", [this](const httplib::Request&, httplib::Response&) {
            released.get_future().wait();
        });
        http.Get("/file", [](const httplib::Request&, httplib::Response& response) {
            response.set_content(std::string(100000, 'f'), "application/octet-stream");
        });
        http.set_keep_alive_max_count(1); // an open connection would hold up the end
        port = http.bind_to_any_port("127.0.0.1");
        thread = std::thread([this] { http.listen_after_bind(); });
        EXPECT_TRUE(lab::eventually([this] { return http.is_running(); }));
    }
    ~Server() {
        released.set_value();
        http.stop();
        thread.join();
    }

    std::string url(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(port) + path;
    }

    std::map<std::string, std::string> headers; ///< of the last echo

private:
    httplib::Server http;
    int port = 0;
    std::promise<void> released;
    std::thread thread;
};

class Receiver final : public xnhttp::Callback {
public:
    explicit Receiver(bool isThrowing = false) : throws(isThrowing) {}
    long addRef() override {
        const std::lock_guard guard(mutex);
        return ++references;
    }
    long release() override {
        const std::lock_guard guard(mutex);
        released.notify_all();
        return --references;
    }
    /// Blocks until the facility has let go of the object.
    void awaitRelease() {
        std::unique_lock lock(mutex);
        released.wait(lock, [this] { return references == 0; });
    }
    void onResponse(xnhttp::Response* response) override {
        ++calls;
        error = response->error();
        status = response->status();
        body.assign(response->body(), response->size());
        if (throws) {
            throw 1;
        }
    }

    int calls = 0;
    int error = -1;
    int status = -1;
    std::string body;

private:
    bool throws;
    std::mutex mutex;
    std::condition_variable released;
    long references = 0;
};

void* makeRequest(const std::string& body) {
    auto* header = lab::bind<xnbase::newRequestHeader>(L"xnbase.dll", "newRequestHeader")();
    header->add("Content-Type", "application/json");
    return lab::bind<xnbase::newRequest>(L"xnbase.dll", "newRequest")(header, body.data(),
                                                                      body.size());
}

void send(const std::string& url, void* request, Receiver& receiver) {
    const auto http = lab::bind<xnbase::asyncHttp>(L"xnbase.dll", "asyncHttp");
    const auto idle = lab::bind<sandbox::Idle>(L"xnbase.dll", "sandboxIdle");
    http(xnhttp::methodPost, url.c_str(), request, &receiver);
    receiver.awaitRelease();
    ASSERT_TRUE(lab::eventually(idle));
}

TEST(ModuleHttp, AnswersOnceWhateverHappens) {
    Server server;
    struct Row {
        std::string url;
        int error;
        int status;
        std::string body;
    };
    const Row rows[] = {{server.url("/echo"), 0, 200, std::string("[\0data]", 7)},
                        {server.url("/absent"), 0, 404, ""},
                        {server.url("/hang"), timedOut, 0, ""},
                        {"http://127.0.0.1:1/", refused, 0, ""},
                        {"", 3, 0, ""}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.url);
        const lab::Events events;
        Receiver receiver;
        send(row.url, makeRequest("data"), receiver);
        EXPECT_EQ(receiver.calls, 1);
        EXPECT_EQ(receiver.error, row.error);
        EXPECT_EQ(receiver.status, row.status);
        EXPECT_EQ(receiver.body, row.body);
        ASSERT_EQ(events.of("http").size(), 2U);
        EXPECT_EQ(events.of("http")[0]["size"], 4);
        EXPECT_EQ(events.of("http")[1]["error"], row.error);
    }
}

TEST(ModuleHttp, SendsNoHeaderOfItsOwn) {
    Server server;
    Receiver receiver;
    send(server.url("/echo"), makeRequest(""), receiver);
    for (const char* added : {"REMOTE_ADDR", "REMOTE_PORT", "LOCAL_ADDR", "LOCAL_PORT", "Host"}) {
        server.headers.erase(added);
    }
    const std::map<std::string, std::string> wanted = {{"Content-Length", "0"},
                                                       {"Content-Type", "application/json"}};
    EXPECT_EQ(server.headers, wanted);
}

TEST(ModuleHttp, MisuseIsAnsweredAndReported) {
    Server server;
    const lab::Events events;
    Receiver first;
    Receiver second;
    Receiver throwing(true);
    void* const request = makeRequest("data");
    send(server.url("/echo"), request, first);
    send(server.url("/echo"), request, second);
    EXPECT_EQ(events.of("failure").size(), 1U);
    EXPECT_EQ(second.error, badArgument);
    EXPECT_EQ(second.calls, 1);
    send(server.url("/echo"), makeRequest("data"), throwing);
    EXPECT_EQ(events.of("failure").size(), 2U);
}

std::size_t collect(char* data, std::size_t size, std::size_t count, void* into) {
    static_cast<std::string*>(into)->append(data, size * count);
    return size * count;
}

TEST(ModuleCurl, DownloadsByTheOptionsOfTheEasyInterface) {
    Server server;
    void* made = nullptr;
    const auto create = lab::bind<orv::CreateOrvObject>(L"xncurl.dll", "CreateOrvObject");
    ASSERT_EQ(create(IXCurlService::id, &made), orv::ok);
    auto* curl = static_cast<IXCurlService*>(made);
    void* const handle = curl->curl_easy_init();
    std::string body;
    const std::string url = server.url("/file");
    EXPECT_EQ(curl->curl_easy_setopt(handle, 10002, url.c_str()), 0);
    EXPECT_EQ(curl->curl_easy_setopt(handle, 20011, &collect), 0);
    EXPECT_EQ(curl->curl_easy_setopt(handle, 10001, &body), 0);
    EXPECT_EQ(curl->curl_easy_setopt(handle, 64, 0L), 0);
    EXPECT_NE(curl->curl_easy_setopt(handle, 50001, 0L), 0);
    EXPECT_EQ(curl->curl_easy_perform(handle), 0);
    EXPECT_EQ(body, std::string(100000, 'f'));
    curl->curl_easy_cleanup(handle);
    EXPECT_EQ(curl->Release(), 0U);
}

} // namespace
