#include "updatekelvar/fetch/kelvarhttp.h"

#include <utility>

#include "host/hostmodules.h"
#include "host/log.h"

namespace {

constexpr int httpOk = 200;

} // namespace

XEnvConfigRef::XEnvConfigRef() : config(hostmodules::envConfigInstance()) {}

std::string XEnvConfigRef::makeUrl(const char* path) const {
    const char* address = config ? config->serverAddress() : nullptr;
    return address ? std::string(address) + path : std::string();
}

void XKelvarHttp::post(const std::string& url, const std::string& data, Callback callback) {
    if (url.empty()) {
        callback({});
        return;
    }
    XLOG(logProgress, "update plugin, kelvar http, request:", url, ", data:", data);
    auto step = [callback = std::move(callback)](int error, int code, const std::string& body) {
        if (error != 0 || code != httpOk) {
            XLOG(logFault, "update plugin, kelvar http, response error:", error, ",code:", code);
            callback({});
            return;
        }
        callback(body);
    };
    _sendRequest(xnhttp::methodPost, url, data, step);
}

void XKelvarHttp::_sendRequest(int method, const std::string& url, const std::string& data,
                               const xnhttp::ResponseStep& step) {
    xnhttp::sendRequest(method, url, {{xnhttp::contentType, xnhttp::contentTypeJson}}, data, step);
}
