#include "sandbox/server/sending.h"

#include <algorithm>
#include <httplib.h>

namespace sandbox {
namespace {

constexpr std::uint64_t blockSize = 65536;

/// Bytes of the next block: up to the next place where something happens.
std::size_t nextLength(const Sending& sending, std::uint64_t offset, std::size_t wanted) {
    std::uint64_t end = std::max(sending.stopAt, offset);
    if (sending.holdAt && offset < *sending.holdAt) {
        end = std::min(end, *sending.holdAt);
    }
    return static_cast<std::size_t>(std::min({end - offset, blockSize, std::uint64_t{wanted}}));
}

} // namespace

void sendFile(const std::shared_ptr<StoredFile>& file, const Sending& sending,
              httplib::Response& response) {
    const auto provide = [file, sending](std::size_t offset, std::size_t wanted,
                                         httplib::DataSink& sink) {
        if (sending.holdAt && offset == *sending.holdAt) {
            sending.gate->pass();
        }
        const std::string piece = file->read(offset, nextLength(sending, offset, wanted));
        if (piece.empty()) {
            return false;
        }
        sending.told(offset + piece.size());
        return sink.write(piece.data(), piece.size());
    };
    response.set_content_provider(static_cast<std::size_t>(file->size()),
                                  "application/octet-stream", provide);
}

void sendCut(const std::string& text, std::size_t stopAt, const char* type,
             httplib::Response& response) {
    const auto provide = [text, stopAt](std::size_t offset, std::size_t, httplib::DataSink& sink) {
        const std::string piece = offset < stopAt ? text.substr(offset, stopAt - offset) : "";
        return !piece.empty() && sink.write(piece.data(), piece.size());
    };
    response.set_content_provider(text.size(), type, provide);
}

} // namespace sandbox
