#pragma once

#include <cstdint>
#include <functional>
#include <memory>

#include "sandbox/server/storage.h"

namespace httplib {
struct Response;
}

namespace sandbox {

/// Lets the server library send the file, on the thread that serves the request. `told` comes
/// ahead of the bytes: a client that has them all may ask on at once.
void sendFile(const std::shared_ptr<StoredFile>& file,
              const std::function<void(std::uint64_t sent)>& told, httplib::Response& response);

} // namespace sandbox
