#pragma once

#include <memory>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "host/xnhttp.h"
#include "utils/mutex.h"

namespace sandbox {

/// What has been handed out and not yet come back, so that a handle which is unknown or
/// comes back twice is told from a good one. Any thread.
template <class Object>
class HandleTable {
public:
    Object* add(std::unique_ptr<Object> object) {
        MutexLock lock(mutex);
        Object* const handle = object.get();
        objects[handle] = std::move(object);
        return handle;
    }

    /// Null for a handle that is not in the table.
    std::unique_ptr<Object> take(const void* handle) {
        MutexLock lock(mutex);
        const auto found = objects.find(handle);
        if (found == objects.end()) {
            return nullptr;
        }
        std::unique_ptr<Object> object = std::move(found->second);
        objects.erase(found);
        return object;
    }

private:
    Mutex mutex;
    std::unordered_map<const void*, std::unique_ptr<Object>> objects XR_GUARDED_BY(mutex);
};

class HttpHeader final : public IXHttpHeader {
public:
    using Pairs = std::vector<std::pair<std::string, std::string>>;

    void reserved0() override {}
    void reserved1() override {}
    void add(const char* name, const char* value) override;

    const Pairs& all() const { return pairs; }

private:
    Pairs pairs;
};

struct HttpRequest {
    HttpHeader::Pairs headers;
    std::string body;
};

/// The request behind a handle of newRequest, which is used up; null for another handle.
std::unique_ptr<HttpRequest> takeRequest(const void* handle);

} // namespace sandbox
