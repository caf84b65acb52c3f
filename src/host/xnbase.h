#pragma once

#include <cstddef>

#include "host/ifileversionstore.h"
#include "host/xnhttp.h"
#include "host/xntask.h"
#include "platform/modules.h"

/// Types of the exports of xnbase.dll. The names of the exports are those of the types.
namespace xnbase {

/// One log line; `text` has `length` bytes and a terminating zero. Any thread.
using writeLog = void (*)(int level, const char* file, int line, const char* function,
                          const char* text, std::size_t length);
/// Loads a sibling module after a test of its signature. `directory` is a sub-folder of
/// the client's folder or empty. `*error` is -2 when the signature is wrong. The caller
/// owes one free of the module.
using loadXNLibrary = platform::ModuleHandle (*)(const wchar_t* name, const wchar_t* directory,
                                                 bool flag, int* error);
using getFileVer = IFileVersionStore* (*)();
/// A statistic event: seven zero-terminated texts.
using event = void (*)(const char*, const char*, const char*, const char*, const char*, const char*,
                       const char*);
using postTask = void (*)(int, XN::Task*);
/// The client's home folder into a buffer of `size` wide characters; whether it did.
using homeDirectory = bool (*)(unsigned char flag, wchar_t* buffer, int size);
using envConfigInstance = IXEnvConfig* (*)();
using newRequestHeader = IXHttpHeader* (*)();
using newRequest = void* (*)(IXHttpHeader* header, const char* body, std::size_t length);
using asyncHttp = void (*)(int method, const char* url, void* request, xnhttp::Callback* callback);
/// Starts a program; nothing comes back.
using runProcess = void (*)(const wchar_t* file, const wchar_t* parameters);

/// `*error` of loadXNLibrary for a wrong signature.
inline constexpr int signatureError = -2;

} // namespace xnbase
