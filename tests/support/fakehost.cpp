#include <cstdarg>
#include <memory>
#include <random>
#include <stdexcept>

#include "host/xnbase.h"
#include "support/fakehost.h"
#include "xrefresher.h"

namespace {

FakeHost* theHost = nullptr;

FakeHost& host() {
    return theHost ? *theHost : throw std::logic_error("no FakeHost stands");
}

void logToHost(int level, const char* file, int line, const char* function, const char* text,
               std::size_t length) {
    host().addLog({level, file, line, function, std::string(text, length)});
}

void* loadLibrary(const wchar_t* name, const wchar_t* directory, bool /*flag*/, int* error) {
    *error = host().badSignatures.count(name) > 0 ? xnbase::signatureError : 0;
    const std::wstring folder = *directory ? std::wstring(directory) + L"\\" : L"";
    return *error == 0 ? fake::load(folder + name) : nullptr;
}

bool homeDirectory(unsigned char flag, wchar_t* buffer, int size) {
    const std::string& home = host().homeDirectory;
    const bool fits = home.size() < static_cast<std::size_t>(size);
    std::copy_n(home.begin(), fits ? home.size() : 0, buffer);
    return flag == 1 && fits && !home.empty();
}

void postTask(int /*kind*/, XN::Task* task) {
    task->addRef();
    task->run();
    task->release();
}

template <class... Texts>
void addEvent(Texts... texts) {
    host().events.emplace_back();
    ((host().events.back().append(texts ? texts : "-") += ' '), ...);
}

void runProcess(const wchar_t* file, const wchar_t* parameters) {
    host().startedPrograms.emplace_back(file, parameters ? parameters : L"(null)");
}

// --- HTTP ---

/// A request, at first no more than its header.
struct Message final : Reserved<IXHttpHeader>, FakeHost::Request {
    void add(const char* name, const char* value) override { headers.emplace_back(name, value); }
};

struct Environment final : Reserved<IXEnvConfig> {
    const char* upgradeAddress() override { return host().upgradeAddress; }
    const char* serverAddress() override { return host().serverAddress; }
};

struct Response final : Reserved<xnhttp::Response> {
    explicit Response(FakeHost::Answer given) : answer(std::move(given)) {}
    int error() override { return answer.error; }
    int status() override { return answer.status; }
    const char* body() override { return answer.body.data(); }
    std::size_t size() override { return answer.body.size(); }

    FakeHost::Answer answer;
};

Environment environment;

void* newRequest(IXHttpHeader* header, const char* body, std::size_t length) {
    auto* message = header ? static_cast<Message*>(header) : new Message;
    message->body.assign(body, length);
    return message;
}

void asyncHttp(int method, const char* url, void* request, xnhttp::Callback* callback) {
    const std::unique_ptr<Message> message(static_cast<Message*>(request));
    message->method = method;
    message->url = url;
    host().requests.push_back(*message);
    callback->addRef();
    const std::shared_ptr<xnhttp::Callback> taken(callback, [](auto* held) { held->release(); });
    const std::string name = message->url.substr(message->url.rfind('/') + 1);
    const auto call = [answer = host().answers[name], taken] {
        Response response(answer);
        taken->onResponse(&response);
    };
    host().onThread ? host().deliver(call) : call();
}

// --- objects ---

/// An object that lives as long as the process and counts nothing.
template <class Interface>
struct Static : Reserved<Interface> {
    long QueryInterface(const orv::GUID& /*id*/, void** /*object*/) override {
        return orv::noInterface;
    }
    unsigned long AddRef() override { return 1; }
    unsigned long Release() override { return 1; }
};

struct Registry final : Static<IXModuleRegistry> {
    platform::ModuleHandle resolve(const wchar_t* moduleId) override {
        return platform::findModule(moduleId);
    }
};

struct BaseInfo final : Static<IXNBaseInfo> {
    const void* query(std::uint32_t code, const std::uint32_t* value) override {
        const XOsVersionRecord& record = host().osVersion;
        return code == osVersionCode && *value == 1 && record.size != 0 ? &record : nullptr;
    }
};

struct GuardBase final : Static<IXNGuardBase> {
    int instanceExists(const wchar_t* name, int flag) override {
        return flag == 0 && host().openWindows.count(name) > 0 ? 1 : 0;
    }
};

struct CurlService final : Static<IXCurlService> {
    using Write = std::size_t (*)(char*, std::size_t, std::size_t, void*);
    struct Handle {
        std::string url;
        Write write = nullptr;
        void* target = nullptr;
    };

    void* curl_easy_init() override { return host().hasHandles ? new Handle : nullptr; }
    void curl_easy_cleanup(void* handle) override { delete static_cast<Handle*>(handle); }

    // The interface has libcurl's own form. NOLINTNEXTLINE(cert-dcl50-cpp)
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
        auto [code, body, chunk] = host().onTransfer(easy->url);
        for (std::size_t at = 0; at < body.size(); at += chunk) {
            const std::size_t size = std::min(chunk, body.size() - at);
            if (easy->write(body.data() + at, 1, size, easy->target) != size) {
                return 23;
            }
        }
        return code;
    }
};

template <class Object>
long createOne(const orv::GUID& id, void** object) {
    static Object one;
    *object = id == Object::id ? &one : nullptr;
    return *object ? orv::ok : orv::noInterface;
}

int getChannelType(char* buffer, int* length) {
    const auto room = static_cast<std::size_t>(*length);
    *length = static_cast<int>(host().channelType.copy(buffer, room));
    return 0;
}

template <class Function>
void* address(Function* function) {
    return reinterpret_cast<void*>(function);
}

/// An export that gives a part of the host as its interface.
template <class Interface, auto part>
Interface* give() {
    return &(host().*part);
}

fake::Exports baseExports() {
    return {
        {"writeLog", address(logToHost)},
        {"loadXNLibrary", address(loadLibrary)},
        {"getFileVer", address(give<IFileVersionStore, &FakeHost::versions>)},
        {"event", address(static_cast<xnbase::event>(addEvent))},
        {"postTask", address(postTask)},
        {"homeDirectory", address(homeDirectory)},
        {"envConfigInstance", address(+[]() -> IXEnvConfig* { return &environment; })},
        {"newRequestHeader", address(+[]() -> IXHttpHeader* { return new Message; })},
        {"newRequest", address(newRequest)},
        {"asyncHttp", address(asyncHttp)},
        {"runProcess", address(runProcess)},
    };
}

/// The sibling modules of a healthy client.
void installModules() {
    using enum fake::Presence;
    fake::addModule(L"xnbase.dll", baseExports(), loaded);
    fake::addModule(L"XNSetting.dll",
                    {{"GetKV", address(give<IKeyValueStore, &FakeHost::settings>)},
                     {"GetNotificationCenter",
                      address(give<NC::INotificationCenter, &FakeHost::notifications>)}},
                    loadable);
    fake::addModule(L"xnuser.dll",
                    {{"GetUserCenter", address(give<uc::IUserCenter, &FakeHost::user>)}}, loadable);
    fake::addModule(L"xnquiet.dll", {{"IsMuteMode", address(+[] { return host().muteMode; })}},
                    loadable);
    fake::addModule(L"XNGuardBase.dll", {}, loaded);
    fake::addModule(L"OrvSecurityver.dll", {{"GetChannelType", address(getChannelType)}}, loadable);
    fake::addModule(L"xnplugins\\xrefresher.dll", {{"GetUpdateKelvar", address(GetUpdateKelvar)}},
                    loaded);
    // The module behind each id stands under the id as its name.
    const std::pair<const wchar_t*, orv::CreateOrvObject> factories[] = {
        {L"OrvBase.dll", createOne<Registry>},
        {L"module.base", createOne<BaseInfo>},
        {L"module.xnguardbase", createOne<GuardBase>},
        {L"module.libcurl", createOne<CurlService>}};
    for (const auto& [name, create] : factories) {
        fake::addModule(name, {{"CreateOrvObject", address(create)}}, loaded);
    }
}

} // namespace

FakeHost::FakeHost()
    : folder(std::filesystem::temp_directory_path() /
             ("xrefresher-test-" + std::to_string(std::random_device()()))) {
    std::filesystem::create_directories(folder);
    theHost = this;
    fake::reset();
    fake::setExecutable(clientPath("trayhost.exe"));
    installModules();
}

void FakeHost::awaitDeliveries() {
    std::vector<std::thread> ended;
    {
        const std::lock_guard guard(deliveryMutex);
        ended.swap(deliveries);
    }
    for (std::thread& delivery : ended) {
        delivery.join();
    }
}

FakeHost::~FakeHost() {
    awaitDeliveries();
    fake::reset();
    theHost = nullptr;
    std::error_code ignored;
    std::filesystem::remove_all(folder, ignored);
}
