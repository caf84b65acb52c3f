#include <curl/curl.h>

#include "host/xnbase.h"
#include "sandbox/common/config.h"
#include "sandbox/common/events.h"
#include "sandbox/faults/clientfaults.h"
#include "sandbox/modules/xnbase/task.h"
#include "sandbox/modules/xnbase/transfers.h"

namespace sandbox {

namespace {

class Response final : public xnhttp::Response {
public:
    explicit Response(const HttpAnswer& received) : answer(received) {}

    void reserved0() override {}
    void reserved1() override {}
    void reserved2() override {}
    int error() override { return answer.error; }
    int status() override { return answer.status; }
    const char* body() override { return answer.body.data(); }
    std::size_t size() override { return answer.body.size(); }

private:
    const HttpAnswer& answer;
};

void report(const char* phase, int method, const std::string& url, const HttpAnswer& answer,
            std::size_t size) {
    emit({{"kind", "http"},
          {"phase", phase},
          {"method", method},
          {"url", url},
          {"error", answer.error},
          {"status", answer.status},
          {"size", size}});
}

/// Why a call cannot be sent at all; null when it can.
const char* misuse(int method, const char* url, const HttpRequest* request) {
    if (method != xnhttp::methodPost) {
        return "a method other than POST";
    }
    if (!url) {
        return "no address";
    }
    return request ? nullptr : "a request that is not newRequest's, or is used already";
}

} // namespace

} // namespace sandbox

extern "C" void asyncHttp(int method, const char* url, void* request, xnhttp::Callback* callback) {
    using namespace sandbox;
    std::unique_ptr<HttpRequest> sent = takeRequest(request);
    const std::string address = url ? url : "";
    const auto receiver = callback ? holdReference(callback) : nullptr;
    auto done = [method, address, receiver](HttpAnswer answer) {
        report("answered", method, address, answer, answer.body.size());
        deliveryThread().post([receiver, answer = std::move(answer)] {
            Response response(answer);
            if (receiver) {
                receiver->onResponse(&response);
            }
        });
    };
    report("sent", method, address, {}, sent ? sent->body.size() : 0);
    if (const char* problem = misuse(method, url, sent.get())) {
        emitFailure("asyncHttp", problem);
        done({CURLE_BAD_FUNCTION_ARGUMENT, 0, {}});
        return;
    }
    if (ClientFaults::read().drops(address)) {
        return;
    }
    Transfers::instance().post(address, std::move(sent), processConfig().httpTimeoutMs,
                               std::move(done));
}

static_assert(std::is_same_v<decltype(&asyncHttp), xnbase::asyncHttp>);
