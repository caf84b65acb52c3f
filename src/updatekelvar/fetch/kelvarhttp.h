#pragma once

#include <functional>
#include <string>

#include "host/httprequest.h"

/// The environment as the host has it when this is made. Any thread.
class XEnvConfigRef {
public:
    XEnvConfigRef();

    /// The update platform's address followed directly by `path`; empty when there is no
    /// environment or no address. An address that is the empty text counts as one.
    std::string makeUrl(const char* path) const;

private:
    IXEnvConfig* config;
};

/// Posts a text and hands back a text: the body of the answer, or an empty text for
/// every kind of failure. Holds nothing, so any number of requests may share one. Any
/// thread.
class XKelvarHttp {
public:
    using Callback = std::function<void(const std::string& body)>;

    /// Returns as soon as the request is queued; `data` is copied before. `callback` runs
    /// once on the host's delivery thread, with an empty address at once on the caller's.
    /// Without the host's HTTP it never runs.
    void post(const std::string& url, const std::string& data, Callback callback);

private:
    void _sendRequest(int method, const std::string& url, const std::string& data,
                      const xnhttp::ResponseStep& step);
};
