#pragma once

#include <string>

#include "host/ifileversionstore.h"
#include "host/ikeyvaluestore.h"
#include "host/iupdatekelvar.h"
#include "host/notificationcenter.h"
#include "host/usercenter.h"
#include "host/xnhttp.h"
#include "host/xntask.h"
#include "platform/modules.h"

/// One wrapper a binding to a sibling module. Each looks its module and export up at
/// every call and caches nothing; an absent one gives the neutral answer: null, false,
/// 0 or nothing done. Any thread.
namespace hostmodules {

// xnbase.dll, which the host has loaded before the first call
void writeLog(int level, const char* file, int line, const char* function, const char* text,
              std::size_t length);
IFileVersionStore* getFileVer();
void event(const char* first, const char* second, const char* third, const char* fourth,
           const char* fifth, const char* sixth, const char* seventh);
void postTask(int kind, XN::Task* task);
bool homeDirectory(unsigned char flag, wchar_t* buffer, int size);
IXEnvConfig* envConfigInstance();
IXHttpHeader* newRequestHeader();
void* newRequest(IXHttpHeader* header, const char* body, std::size_t length);
void asyncHttp(int method, const char* url, void* request, xnhttp::Callback* callback);
void runProcess(const wchar_t* file, const wchar_t* parameters);

// xnuser.dll
uc::IUserCenter* getUserCenter();

// xnquiet.dll
int isMuteMode();

// XNSetting.dll
IKeyValueStore* getKV();
NC::INotificationCenter* getNotificationCenter();

// xnplugins\xrefresher.dll, this module's own service
XRefresher::IUpdateKelvar* getUpdateKelvar();

} // namespace hostmodules

/// The library loader: the module of that name, loaded after a test of its signature
/// when it is not yet in the process. `directory` is a sub-folder or empty. Null when it
/// cannot be loaded. With a wrong signature the process ends with exit code -1.
/// `*loaded` tells whether a reference was taken that the caller may give back.
platform::ModuleHandle loadLibraryChecked(const wchar_t* name, const wchar_t* directory,
                                          bool* loaded = nullptr);
