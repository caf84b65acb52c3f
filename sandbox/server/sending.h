#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "sandbox/server/gate.h"
#include "sandbox/server/storage.h"

namespace httplib {
struct Response;
}

namespace sandbox {

/// How a file is sent.
struct Sending {
    /// Told ahead of the bytes: a client that has them all may ask on at once.
    std::function<void(std::uint64_t sent)> told;
    std::uint64_t stopAt;                ///< bytes after which the connection ends
    std::optional<std::uint64_t> holdAt; ///< bytes after which the gate has to be passed
    Gate* gate = nullptr;                ///< outlives the sending
};

/// Lets the server library send the file, on the thread that serves the request.
void sendFile(const std::shared_ptr<StoredFile>& file, const Sending& sending,
              httplib::Response& response);

/// The same of a text whose connection ends after `stopAt` bytes.
void sendCut(const std::string& text, std::size_t stopAt, const char* type,
             httplib::Response& response);

} // namespace sandbox
