#include <map>
#include <mutex>

#include <curl/curl.h>

#include "bench/client/delivery.h"
#include "bench/client/watch.h"
#include "host/xnbase.h"

// xnbase.dll of a client that does no more than a run asks of it: what is measured is the
// plug-in. writeLog does nothing.

namespace {

BenchWatch* watch = nullptr;

class Header final : public IXHttpHeader {
public:
    ~Header() { curl_slist_free_all(lines); }
    void reserved0() override {}
    void reserved1() override {}
    void add(const char* name, const char* value) override {
        lines = curl_slist_append(lines, (std::string(name) + ": " + value).c_str());
    }

    curl_slist* lines = nullptr;
};

class Environment final : public IXEnvConfig {
public:
    const char* upgradeAddress() override { return nullptr; }
    void reserved1() override {}
    void reserved2() override {}
    void reserved3() override {}
    void reserved4() override {}
    const char* serverAddress() override { return watch->server.c_str(); }
};

class Versions final : public IFileVersionStore {
public:
    int getVersion(const char* path, char* buffer, int* length) override {
        const std::lock_guard lock(mutex);
        const auto found = versions.find(path);
        *length = found == versions.end()
                      ? 0
                      : static_cast<int>(found->second.copy(buffer, bufferSize - 1));
        return 0;
    }
    int updateVersion(const char* path, const char* version) override {
        const std::lock_guard lock(mutex);
        versions[path] = version;
        return 0;
    }
    int createVersion(const char* path, const char* version) override {
        return updateVersion(path, version);
    }

private:
    std::mutex mutex;
    std::map<std::string, std::string> versions{{"update\\version.dat", "1.2.0.1500"},
                                                {"OrvSecurityver.dll", "1.2.0.1500"}};
};

} // namespace

extern "C" void benchWatch(BenchWatch* given) {
    watch = given;
}

extern "C" void writeLog(int /*level*/, const char* /*file*/, int /*line*/,
                         const char* /*function*/, const char* /*text*/, std::size_t /*length*/) {}

extern "C" platform::ModuleHandle loadXNLibrary(const wchar_t* name, const wchar_t* directory,
                                                bool /*flag*/, int* /*error*/) {
    const std::wstring folder = directory;
    return platform::loadModule((folder.empty() ? name : folder + L'\\' + name).c_str());
}

extern "C" bool homeDirectory(unsigned char /*flag*/, wchar_t* buffer, int size) {
    buffer[watch->home.copy(buffer, static_cast<std::size_t>(size) - 1)] = L'\0';
    return true;
}

extern "C" IFileVersionStore* getFileVer() {
    static Versions& versions = *new Versions;
    return &versions;
}

extern "C" IXEnvConfig* envConfigInstance() {
    static Environment& environment = *new Environment;
    return &environment;
}

extern "C" IXHttpHeader* newRequestHeader() {
    return new Header;
}

extern "C" void* newRequest(IXHttpHeader* header, const char* body, std::size_t length) {
    auto* const own = static_cast<Header*>(header);
    auto* const request = new bench::Request{{}, std::string(body, length), own->lines};
    own->lines = nullptr;
    delete own;
    return request;
}

extern "C" void asyncHttp(int /*method*/, const char* url, void* request,
                          xnhttp::Callback* callback) {
    std::int64_t none = 0;
    watch->firstRequest.compare_exchange_strong(none, nanoseconds());
    auto* const own = static_cast<bench::Request*>(request);
    own->url = url;
    callback->addRef();
    bench::deliver(std::unique_ptr<bench::Request>(own), callback);
}
