#include "sandbox/modules/xnbase/httprequest.h"

#include <algorithm>

#include "host/xnbase.h"
#include "sandbox/common/events.h"

namespace sandbox {

namespace {

HandleTable<HttpHeader>& headers() {
    static auto& table = *new HandleTable<HttpHeader>;
    return table;
}

HandleTable<HttpRequest>& requests() {
    static auto& table = *new HandleTable<HttpRequest>;
    return table;
}

bool isPlain(const std::string& text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return c == '\r' || c == '\n'; });
}

} // namespace

void HttpHeader::add(const char* name, const char* value) {
    std::pair<std::string, std::string> pair(name ? name : "", value ? value : "");
    if (pair.first.empty() || !isPlain(pair.first) || !isPlain(pair.second)) {
        emitFailure("IXHttpHeader::add", "no header: " + pair.first + ": " + pair.second);
        return;
    }
    pairs.push_back(std::move(pair));
}

std::unique_ptr<HttpRequest> takeRequest(const void* handle) {
    return requests().take(handle);
}

} // namespace sandbox

extern "C" IXHttpHeader* newRequestHeader() {
    return sandbox::headers().add(std::make_unique<sandbox::HttpHeader>());
}

extern "C" void* newRequest(IXHttpHeader* header, const char* body, std::size_t length) {
    auto request = std::make_unique<sandbox::HttpRequest>();
    if (const auto taken = sandbox::headers().take(static_cast<sandbox::HttpHeader*>(header))) {
        request->headers = taken->all();
    } else if (header) {
        sandbox::emitFailure("newRequest", "a header object that is not newRequestHeader's");
    }
    if (body) {
        request->body.assign(body, length);
    }
    return sandbox::requests().add(std::move(request));
}

static_assert(std::is_same_v<decltype(&newRequestHeader), xnbase::newRequestHeader>);
static_assert(std::is_same_v<decltype(&newRequest), xnbase::newRequest>);
