#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "host/refbase.h"
#include "host/xnhttp.h"

namespace xnhttp {

/// Receives an answer: transport error (0 for none), HTTP status, body.
using ResponseStep = std::function<void(int error, int code, const std::string& body)>;

/// Names and values, added in this order.
using Headers = std::vector<std::pair<std::string, std::string>>;

inline constexpr const char* contentType = "Content-Type";
inline constexpr const char* contentTypeJson = "application/json";

/// The object handed to asyncHttp: passes the answer to a function. Owned by the
/// references that the facility takes.
// NOLINTNEXTLINE(bugprone-reserved-identifier,cert-dcl37-c,cert-dcl51-cpp)
class __CALLBACK_IMPL final : public XN::RefBaseImpl<__CALLBACK_IMPL>, public Callback {
public:
    using Function = std::function<void(Response*)>;

    explicit __CALLBACK_IMPL(Function receiver) : function(std::move(receiver)) {}

    long addRef() override { return addReference(); }
    long release() override { return releaseReference(); }
    void onResponse(Response* response) override { function(response); }

private:
    Function function;
};

/// Sends one request and returns without waiting; `step` runs once on the facility's
/// delivery thread. Without the facility nothing is sent and `step` never runs. With an
/// empty address `step` runs at once with error -1, and the request is made all the
/// same, so it may run a second time.
void sendRequest(int method, const std::string& url, const Headers& headers,
                 const std::string& data, const ResponseStep& step);

} // namespace xnhttp
