#include "sandbox/server/sending.h"

#include <algorithm>
#include <httplib.h>

namespace sandbox {
namespace {

constexpr std::size_t blockSize = 65536;

} // namespace

void sendFile(const std::shared_ptr<StoredFile>& file,
              const std::function<void(std::uint64_t sent)>& told, httplib::Response& response) {
    const auto provide = [file, told](std::size_t offset, std::size_t wanted,
                                      httplib::DataSink& sink) {
        const std::string piece = file->read(offset, std::min(wanted, blockSize));
        if (piece.empty()) {
            return false;
        }
        told(offset + piece.size());
        return sink.write(piece.data(), piece.size());
    };
    response.set_content_provider(static_cast<std::size_t>(file->size()),
                                  "application/octet-stream", provide);
}

} // namespace sandbox
