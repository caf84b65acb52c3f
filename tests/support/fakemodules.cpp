#include "support/fakemodules.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <memory>

#include "host/xnbase.h"
#include "support/fakehost.h"
#include "xrefresher.h"

namespace {

FakeHost& host() {
    return FakeHost::current();
}

void logToHost(int level, const char* file, int line, const char* function, const char* text,
               std::size_t length) {
    host().addLog({level, file, line, function, std::string(text, length)});
}

void* loadLibrary(const wchar_t* name, const wchar_t* directory, bool /*flag*/, int* error) {
    if (host().badSignatures.count(name) > 0) {
        *error = -2;
        return nullptr;
    }
    const std::wstring folder = directory ? directory : L"";
    return fake::load(folder.empty() ? name : folder + L"\\" + name);
}

bool homeDirectory(unsigned char flag, wchar_t* buffer, int size) {
    const std::string& home = host().homeDirectory;
    if (flag != 1 || home.empty() || home.size() >= static_cast<std::size_t>(size)) {
        return false;
    }
    std::copy(home.begin(), home.end(), buffer);
    return true;
}

void sendEvent(const char* a, const char* b, const char* c, const char* d, const char* e,
               const char* f, const char* g) {
    host().events.push_back({a, b, c, d, e, f, g});
}

void postTask(int /*kind*/, XN::Task* task) {
    task->addRef();
    task->run();
    task->release();
}

void runProcess(const wchar_t* file, const wchar_t* parameters) {
    host().startedPrograms.emplace_back(file, parameters);
}

// --- HTTP ---

class Header final : public IXHttpHeader {
public:
    void reserved0() override {}
    void reserved1() override {}
    void add(const char* name, const char* value) override { fields.emplace_back(name, value); }

    std::vector<std::pair<std::string, std::string>> fields;
};

class Environment final : public IXEnvConfig {
public:
    const char* upgradeAddress() override { return host().upgradeAddress; }
    void reserved1() override {}
    void reserved2() override {}
    void reserved3() override {}
    void reserved4() override {}
    const char* serverAddress() override { return host().serverAddress; }
};

class Response final : public xnhttp::Response {
public:
    explicit Response(FakeHost::Answer given) : answer(std::move(given)) {}
    void reserved0() override {}
    void reserved1() override {}
    void reserved2() override {}
    int error() override { return answer.error; }
    int status() override { return answer.status; }
    const char* body() override { return answer.body.data(); }
    std::size_t size() override { return answer.body.size(); }

private:
    FakeHost::Answer answer;
};

IXEnvConfig* environment() {
    static Environment one;
    return &one;
}

IXHttpHeader* newHeader() {
    return new Header;
}

void* newRequest(IXHttpHeader* header, const char* body, std::size_t length) {
    const std::unique_ptr<Header> fields(static_cast<Header*>(header));
    auto* request = new FakeHost::Request{0, "", {}, std::string(body, length)};
    if (fields) {
        request->headers = fields->fields;
    }
    return request;
}

void asyncHttp(int method, const char* url, void* handle, xnhttp::Callback* callback) {
    const std::unique_ptr<FakeHost::Request> request(static_cast<FakeHost::Request*>(handle));
    request->method = method;
    request->url = url;
    host().requests.push_back(*request);
    callback->addRef();
    const FakeHost::Answer answer =
        host().onRequest ? host().onRequest(*request) : FakeHost::Answer{0, 404, ""};
    host().deliver([answer, callback] {
        Response response(answer);
        callback->onResponse(&response);
        callback->release();
    });
}

// --- objects ---

/// An object that lives as long as the process and counts nothing.
template <class Interface>
class Static : public Interface {
public:
    long QueryInterface(const orv::GUID& /*id*/, void** /*object*/) override {
        return orv::noInterface;
    }
    unsigned long AddRef() override { return 1; }
    unsigned long Release() override { return 1; }
};

class Registry final : public Static<IXModuleRegistry> {
public:
    platform::ModuleHandle resolve(const wchar_t* moduleId) override {
        const bool absent = host().absentIds.count(moduleId) > 0;
        return absent ? nullptr : platform::findModule(moduleId);
    }
};

class BaseInfo final : public Static<IXNBaseInfo> {
public:
    void reserved3() override {}
    const void* query(std::uint32_t code, const std::uint32_t* value) override {
        return code == osVersionCode && *value == 1 ? &host().osVersion : nullptr;
    }
};

class GuardBase final : public Static<IXNGuardBase> {
public:
    void reserved3() override {}
    void reserved4() override {}
    void reserved5() override {}
    void reserved6() override {}
    void reserved7() override {}
    void reserved8() override {}
    void reserved9() override {}
    void reserved10() override {}
    void reserved11() override {}
    void reserved12() override {}
    int instanceExists(const wchar_t* name, int flag) override {
        return flag == 0 && host().openWindows.count(name) > 0 ? 1 : 0;
    }
};

class CurlService final : public Static<IXCurlService> {
public:
    using Write = std::size_t (*)(char*, std::size_t, std::size_t, void*);
    struct Handle {
        std::string url;
        Write write = nullptr;
        void* target = nullptr;
    };

    void* curl_easy_init() override { return new Handle; }
    void curl_easy_cleanup(void* handle) override { delete static_cast<Handle*>(handle); }

    int curl_easy_setopt(void* handle, int option, ...) override {
        auto* easy = static_cast<Handle*>(handle);
        va_list arguments;
        va_start(arguments, option);
        if (option == 10002) {
            easy->url = va_arg(arguments, const char*);
        } else if (option == 10001) {
            easy->target = va_arg(arguments, void*);
        } else if (option == 20011) {
            easy->write = va_arg(arguments, Write);
        } else {
            host().numberOptions.emplace_back(option, va_arg(arguments, long));
        }
        va_end(arguments);
        return 0;
    }

    int curl_easy_perform(void* handle) override {
        const auto* easy = static_cast<Handle*>(handle);
        host().transfers.push_back(easy->url);
        FakeHost::Transfer transfer =
            host().onTransfer ? host().onTransfer(easy->url) : FakeHost::Transfer{6, "", 1};
        std::string& body = transfer.body;
        for (std::size_t at = 0; at < body.size(); at += transfer.chunk) {
            const std::size_t size = std::min(transfer.chunk, body.size() - at);
            if (easy->write(body.data() + at, 1, size, easy->target) != size) {
                return 23;
            }
        }
        return transfer.code;
    }
};

template <class Object>
long createOne(const orv::GUID& id, void** object) {
    static Object one;
    if (id == Object::id) {
        *object = &one;
        return orv::ok;
    }
    return orv::noInterface;
}

int channelType(char* buffer, int* length) {
    const std::string& type = host().channelType;
    const auto size = std::min(type.size(), static_cast<std::size_t>(*length));
    std::memcpy(buffer, type.data(), size);
    *length = static_cast<int>(size);
    return 0;
}

template <class Function>
void* address(Function* function) {
    return reinterpret_cast<void*>(function);
}

fake::Exports baseExports() {
    return {
        {"writeLog", address(logToHost)},
        {"loadXNLibrary", address(loadLibrary)},
        {"getFileVer", address(+[]() -> IFileVersionStore* { return &host().versions; })},
        {"event", address(sendEvent)},
        {"postTask", address(postTask)},
        {"homeDirectory", address(homeDirectory)},
        {"envConfigInstance", address(environment)},
        {"newRequestHeader", address(newHeader)},
        {"newRequest", address(newRequest)},
        {"asyncHttp", address(asyncHttp)},
        {"runProcess", address(runProcess)},
    };
}

} // namespace

namespace fakemodules {

void install() {
    using fake::Presence;
    fake::addModule(L"xnbase.dll", baseExports(), Presence::loaded);
    fake::addModule(L"XNSetting.dll",
                    {{"GetKV", address(+[]() -> IKeyValueStore* { return &host().settings; })},
                     {"GetNotificationCenter", address(+[]() -> NC::INotificationCenter* {
                          return &host().notifications;
                      })}},
                    Presence::loadable);
    fake::addModule(
        L"xnuser.dll",
        {{"GetUserCenter", address(+[]() -> uc::IUserCenter* { return &host().user; })}},
        Presence::loadable);
    fake::addModule(L"xnquiet.dll", {{"IsMuteMode", address(+[] { return host().muteMode; })}},
                    Presence::loadable);
    fake::addModule(L"OrvBase.dll", {{"CreateOrvObject", address(createOne<Registry>)}},
                    Presence::loaded);
    fake::addModule(L"XNGuardBase.dll", {}, Presence::loaded);
    fake::addModule(L"OrvSecurityver.dll", {{"GetChannelType", address(channelType)}},
                    Presence::loadable);
    fake::addModule(L"xnplugins\\xrefresher.dll", {{"GetUpdateKelvar", address(GetUpdateKelvar)}},
                    Presence::loaded);
    // The module behind each id, under the id as its name.
    fake::addModule(L"module.base", {{"CreateOrvObject", address(createOne<BaseInfo>)}},
                    Presence::loaded);
    fake::addModule(L"module.xnguardbase", {{"CreateOrvObject", address(createOne<GuardBase>)}},
                    Presence::loaded);
    fake::addModule(L"module.libcurl", {{"CreateOrvObject", address(createOne<CurlService>)}},
                    Presence::loaded);
}

} // namespace fakemodules
