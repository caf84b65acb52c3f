#include "host/transfer.h"

#include "host/log.h"
#include "platform/files.h"

namespace transfer {

namespace {

// Options of libcurl's easy interface.
constexpr int optionWriteData = 10001;
constexpr int optionUrl = 10002;
constexpr int optionWriteFunction = 20011;
constexpr int optionSslVerifyPeer = 64;

} // namespace

int perform(IXCurlService* service, const std::string& url, WriteFunction write, void* target,
            Peer peer) {
    void* handle = service->curl_easy_init();
    if (!handle) {
        return failedInit;
    }
    service->curl_easy_setopt(handle, optionUrl, url.c_str());
    service->curl_easy_setopt(handle, optionWriteFunction, write);
    service->curl_easy_setopt(handle, optionWriteData, target);
    if (peer == Peer::anyone) {
        service->curl_easy_setopt(handle, optionSslVerifyPeer, 0L);
    }
    const int code = service->curl_easy_perform(handle);
    if (code != 0) {
        XLOG(logProgress, "update plugin, download task, perform err:", code);
    }
    service->curl_easy_cleanup(handle);
    return code;
}

std::FILE* openTarget(const std::string& path) {
    std::FILE* file = platform::openFile(path, "wb");
    if (file) {
        static_cast<void>(std::setvbuf(file, nullptr, _IONBF, 0));
    }
    return file;
}

std::size_t writeToFile(char* data, std::size_t size, std::size_t count, void* file) {
    return std::fwrite(data, size, count, static_cast<std::FILE*>(file));
}

} // namespace transfer
