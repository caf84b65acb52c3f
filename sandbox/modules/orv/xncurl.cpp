#include <cstdarg>
#include <curl/curl.h>
#include <mutex>
#include <vector>

#include "sandbox/modules/orv/comobject.h"

// libcurl's macros of these names would reach into the interface.
#undef curl_easy_setopt
#undef curl_easy_getinfo

namespace {

/// libcurl numbers an option by the kind of its argument, in steps of this.
constexpr int kindStep = 10000;

/// Handles that callers are done with. Reset, one is as new to its next caller, but knows the
/// certificates that it has parsed and its TLS sessions: parsing them anew is nearly all that a
/// small file over HTTPS costs. Any thread; lives as long as the process.
class IdleHandles {
public:
    static IdleHandles& instance() {
        static IdleHandles& handles = *new IdleHandles;
        return handles;
    }

    CURL* take() {
        const std::lock_guard lock(mutex);
        if (idle.empty()) {
            return ::curl_easy_init();
        }
        CURL* const handle = idle.back();
        idle.pop_back();
        return handle;
    }

    void give(CURL* handle) {
        ::curl_easy_reset(handle);
        const std::lock_guard lock(mutex);
        idle.push_back(handle);
    }

private:
    std::mutex mutex;
    std::vector<CURL*> idle; ///< no more than were ever in use at a time
};

class CurlService final : public sandbox::ComObject<IXCurlService> {
public:
    CurlService() : ComObject(IXCurlService::id) {
        static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
        static_cast<void>(initialised);
    }

    void* curl_easy_init() override {
        CURL* const handle = IdleHandles::instance().take();
        ::curl_easy_setopt(handle, CURLOPT_FORBID_REUSE, 1L); // a connection a file, as ever
        ::curl_easy_setopt(handle, CURLOPT_CAPATH, nullptr);  // with one, none are kept parsed
        ::curl_easy_setopt(handle, CURLOPT_NOPROXY, "*");     // the storage is on loopback
        ::curl_easy_setopt(handle, CURLOPT_NOSIGNAL, 1L);
        return handle;
    }

    // The interface has libcurl's own form. NOLINTNEXTLINE(cert-dcl50-cpp)
    int curl_easy_setopt(void* handle, int option, ...) override {
        const auto number = static_cast<CURLoption>(option);
        CURLcode code = CURLE_UNKNOWN_OPTION;
        va_list arguments;
        va_start(arguments, option);
        switch (option / kindStep * kindStep) {
        // The branches differ in the argument's type. NOLINTNEXTLINE(bugprone-branch-clone)
        case CURLOPTTYPE_LONG:
            code = ::curl_easy_setopt(handle, number, va_arg(arguments, long));
            break;
        case CURLOPTTYPE_OBJECTPOINT:
        case CURLOPTTYPE_BLOB:
            code = ::curl_easy_setopt(handle, number, va_arg(arguments, void*));
            break;
        case CURLOPTTYPE_FUNCTIONPOINT:
            code = ::curl_easy_setopt(handle, number, va_arg(arguments, void (*)()));
            break;
        case CURLOPTTYPE_OFF_T:
            code = ::curl_easy_setopt(handle, number, va_arg(arguments, curl_off_t));
            break;
        default:
            break;
        }
        va_end(arguments);
        return code;
    }

    int curl_easy_perform(void* handle) override { return ::curl_easy_perform(handle); }
    void curl_easy_cleanup(void* handle) override { IdleHandles::instance().give(handle); }
};

} // namespace

extern "C" long CreateOrvObject(const orv::GUID& id, void** object) {
    if (!object) {
        return orv::invalidArgument;
    }
    *object = nullptr;
    return id == IXCurlService::id ? sandbox::handOut<IXCurlService>(new CurlService, object)
                                   : orv::noInterface;
}
