#include "host/httprequest.h"

#include "host/hostmodules.h"

namespace xnhttp {

namespace {

constexpr int noAddressError = -1;
constexpr int noAnswerError = -1;

void deliver(Response* response, const ResponseStep& step) {
    if (!response) {
        step(noAnswerError, 0, {});
        return;
    }
    const std::size_t size = response->size();
    const char* body = response->body();
    const int code = response->status();
    const int error = response->error();
    step(error, code, body ? std::string(body, size) : std::string());
}

} // namespace

void sendRequest(int method, const std::string& url, const Headers& headers,
                 const std::string& data, const ResponseStep& step) {
    if (url.empty()) {
        step(noAddressError, 0, {}); // no return: the request is made all the same
    }
    IXHttpHeader* header = hostmodules::newRequestHeader();
    if (header) {
        for (const auto& [name, value] : headers) {
            header->add(name.c_str(), value.c_str());
        }
    }
    const XN::ScopedRef callback(
        new __CALLBACK_IMPL([step](Response* response) { deliver(response, step); }));
    void* request = hostmodules::newRequest(header, data.data(), data.size());
    hostmodules::asyncHttp(method, url.c_str(), request, callback.get());
}

} // namespace xnhttp
