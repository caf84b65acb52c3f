#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "sandbox/common/worker.h"
#include "sandbox/modules/xnbase/httprequest.h"

namespace sandbox {

struct HttpAnswer {
    int error = 0; ///< libcurl's number of the transport error
    int status = 0;
    std::string body;
};

/// POST requests through libcurl's multi interface, all on one thread of their own, so
/// that a receiver which blocks the delivery does not hold up other transfers. Lives as
/// long as the process. Any thread.
class Transfers {
public:
    /// Called exactly once for each request, on the transfer thread; returns quickly.
    using Done = std::function<void(HttpAnswer)>;

    static Transfers& instance();

    void post(const std::string& url, std::unique_ptr<HttpRequest> request, std::uint32_t timeoutMs,
              Done done);

    /// Whether every request has been answered.
    bool idle() const { return unanswered == 0; }

private:
    struct Transfer;

    Transfers();
    void loop();
    void addPending();
    void collectFinished();
    void finish(Transfer* transfer, int error);

    void* const multi;
    std::atomic<std::size_t> unanswered{0};
    Mutex mutex;
    std::vector<std::unique_ptr<Transfer>> pending XR_GUARDED_BY(mutex);
};

/// The thread on which answers are delivered.
Worker& deliveryThread();

} // namespace sandbox
