#pragma once

#include <cstddef>

/// Asynchronous HTTP of xnbase.dll. Its exports:
///   IXEnvConfig* envConfigInstance()
///   IXHttpHeader* newRequestHeader()
///   void* newRequest(IXHttpHeader*, const char* body, size_t length)
///   void asyncHttp(int method, const char* url, void* request, xnhttp::Callback*)
/// asyncHttp takes the request and its header over and returns at once. The body is
/// copied before newRequest returns. The callback comes exactly once, on the facility's
/// delivery thread; a time-out comes as a transport error.
namespace xnhttp {

inline constexpr int methodPost = 2;

/// An answer; valid in the call that brings it.
class Response {
public:
    virtual void reserved0() = 0;
    virtual void reserved1() = 0;
    virtual void reserved2() = 0;
    virtual int error() = 0;        ///< slot 3; transport error, 0 for none
    virtual int status() = 0;       ///< slot 4; HTTP status
    virtual const char* body() = 0; ///< slot 5; not zero-terminated
    virtual std::size_t size() = 0; ///< slot 6; bytes of the body

protected:
    ~Response() = default;
};

/// Receiver of an answer. Starts with a count of 0: asyncHttp adds a reference when it
/// takes the object and releases it after the call.
class Callback {
public:
    virtual long addRef() = 0;                       ///< slot 0; the new count
    virtual long release() = 0;                      ///< slot 1; the new count
    virtual void onResponse(Response* response) = 0; ///< slot 2

protected:
    ~Callback() = default;
};

} // namespace xnhttp

/// Headers of one request. Borrowed until it is given to newRequest.
class IXHttpHeader {
public:
    virtual void reserved0() = 0;
    virtual void reserved1() = 0;
    virtual void add(const char* name, const char* value) = 0; ///< slot 2; copies both

protected:
    ~IXHttpHeader() = default;
};

/// Addresses of the client's servers, zero-terminated, without a path; null when there
/// is none. Borrowed.
class IXEnvConfig {
public:
    virtual const char* upgradeAddress() = 0; ///< slot 0
    virtual void reserved1() = 0;
    virtual void reserved2() = 0;
    virtual void reserved3() = 0;
    virtual void reserved4() = 0;
    virtual const char* serverAddress() = 0; ///< slot 5; the update platform

protected:
    ~IXEnvConfig() = default;
};
