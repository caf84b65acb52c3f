#include "host/hostmodules.h"

#include "host/xnbase.h"
#include "platform/process.h"
#include "platform/text.h"

namespace {

enum class LoadRule { alreadyLoaded, load, loadChecked };

platform::ModuleHandle findByRule(const wchar_t* module, LoadRule rule) {
    if (platform::ModuleHandle handle = platform::findModule(module)) {
        return handle;
    }
    switch (rule) {
    case LoadRule::load:
        return platform::loadModule(module);
    case LoadRule::loadChecked:
        return loadLibraryChecked(module, L"");
    case LoadRule::alreadyLoaded:
        break;
    }
    return nullptr;
}

template <class Function>
Function bind(const wchar_t* module, const char* name, LoadRule rule = LoadRule::alreadyLoaded) {
    return reinterpret_cast<Function>(platform::findExport(findByRule(module, rule), name));
}

constexpr const wchar_t* baseModule = L"xnbase.dll";
constexpr const wchar_t* settingModule = L"XNSetting.dll";

} // namespace

namespace hostmodules {

void writeLog(int level, const char* file, int line, const char* function, const char* text,
              std::size_t length) {
    if (const auto call = bind<xnbase::writeLog>(baseModule, "writeLog")) {
        call(level, file, line, function, text, length);
    }
}

IFileVersionStore* getFileVer() {
    const auto call = bind<xnbase::getFileVer>(baseModule, "getFileVer");
    return call ? call() : nullptr;
}

void event(const char* first, const char* second, const char* third, const char* fourth,
           const char* fifth, const char* sixth, const char* seventh) {
    if (const auto call = bind<xnbase::event>(baseModule, "event")) {
        call(first, second, third, fourth, fifth, sixth, seventh);
    }
}

void postTask(int kind, XN::Task* task) {
    if (const auto call = bind<xnbase::postTask>(baseModule, "postTask")) {
        call(kind, task);
    }
}

bool homeDirectory(unsigned char flag, wchar_t* buffer, int size) {
    const auto call = bind<xnbase::homeDirectory>(baseModule, "homeDirectory");
    return call && call(flag, buffer, size);
}

IXEnvConfig* envConfigInstance() {
    const auto call = bind<xnbase::envConfigInstance>(baseModule, "envConfigInstance");
    return call ? call() : nullptr;
}

IXHttpHeader* newRequestHeader() {
    const auto call = bind<xnbase::newRequestHeader>(baseModule, "newRequestHeader");
    return call ? call() : nullptr;
}

void* newRequest(IXHttpHeader* header, const char* body, std::size_t length) {
    const auto call = bind<xnbase::newRequest>(baseModule, "newRequest");
    return call ? call(header, body, length) : nullptr;
}

void asyncHttp(int method, const char* url, void* request, xnhttp::Callback* callback) {
    if (const auto call = bind<xnbase::asyncHttp>(baseModule, "asyncHttp")) {
        call(method, url, request, callback);
    }
}

void runProcess(const wchar_t* file, const wchar_t* parameters) {
    if (const auto call =
            bind<xnbase::runProcess>(baseModule, "runProcess", LoadRule::loadChecked)) {
        call(file, parameters);
    }
}

uc::IUserCenter* getUserCenter() {
    const auto call =
        bind<uc::IUserCenter* (*)()>(L"xnuser.dll", "GetUserCenter", LoadRule::loadChecked);
    return call ? call() : nullptr;
}

int isMuteMode() {
    const auto call = bind<int (*)()>(L"xnquiet.dll", "IsMuteMode", LoadRule::load);
    return call ? call() : 0;
}

IKeyValueStore* getKV() {
    const auto call = bind<IKeyValueStore* (*)()>(settingModule, "GetKV", LoadRule::loadChecked);
    return call ? call() : nullptr;
}

NC::INotificationCenter* getNotificationCenter() {
    const auto call = bind<NC::INotificationCenter* (*)()>(settingModule, "GetNotificationCenter",
                                                           LoadRule::loadChecked);
    return call ? call() : nullptr;
}

XRefresher::IUpdateKelvar* getUpdateKelvar() {
    const auto call = bind<XRefresher::IUpdateKelvar* (*)()>(
        L"xnplugins\\xrefresher.dll", "GetUpdateKelvar", LoadRule::loadChecked);
    return call ? call() : nullptr;
}

} // namespace hostmodules

platform::ModuleHandle loadLibraryChecked(const wchar_t* name, const wchar_t* directory,
                                          bool* loaded) {
    if (loaded) {
        *loaded = false;
    }
    if (platform::ModuleHandle handle = platform::findModule(name)) {
        return handle;
    }
    const auto call = bind<xnbase::loadXNLibrary>(baseModule, "loadXNLibrary");
    if (!call) {
        return nullptr;
    }
    int error = 0;
    platform::ModuleHandle handle = call(name, directory, true, &error);
    if (error == xnbase::signatureError) {
        platform::endProcess(
            "Error",
            "Signature verification failed!\n\nLibrary : " + platform::toUtf8(name) + "\n\n", -1);
    }
    if (loaded) {
        *loaded = handle != nullptr;
    }
    return handle;
}
