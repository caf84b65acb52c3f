#pragma once

#include <memory>
#include <string>

#include <curl/curl.h>

#include "host/xnhttp.h"

namespace bench {

/// One POST. Owns its header lines.
struct Request {
    ~Request() { curl_slist_free_all(headers); }

    std::string url;
    std::string body;
    curl_slist* headers = nullptr;
};

/// Asks and hands the answer to `callback`, whose reference it takes over, on the one delivery
/// thread. Any thread; returns at once.
void deliver(std::unique_ptr<Request> request, xnhttp::Callback* callback);

} // namespace bench
