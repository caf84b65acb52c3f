#include <cstdarg>
#include <curl/curl.h>

#include "sandbox/modules/orv/comobject.h"

// libcurl's macros of these names would reach into the interface.
#undef curl_easy_setopt
#undef curl_easy_getinfo

namespace {

/// libcurl numbers an option by the kind of its argument, in steps of this.
constexpr int kindStep = 10000;

class CurlService final : public sandbox::ComObject<IXCurlService> {
public:
    CurlService() : ComObject(IXCurlService::id) {
        static const CURLcode initialised = curl_global_init(CURL_GLOBAL_DEFAULT);
        static_cast<void>(initialised);
    }

    void* curl_easy_init() override {
        CURL* const handle = ::curl_easy_init();
        ::curl_easy_setopt(handle, CURLOPT_NOPROXY, "*"); // the storage is on loopback
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
    void curl_easy_cleanup(void* handle) override { ::curl_easy_cleanup(handle); }
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
