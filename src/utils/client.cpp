#include <array>
#include <cstring>

#include "host/hostmodules.h"
#include "host/log.h"
#include "host/objectloader.h"
#include "platform/files.h"
#include "platform/ini.h"
#include "platform/lasterror.h"
#include "platform/paths.h"
#include "platform/process.h"
#include "utils/mutex.h"
#include "utils/utils.h"

namespace {

constexpr const wchar_t* markerModule = L"tarnlyoem.dll";
constexpr const wchar_t* markerFolder = L"cpd";
constexpr const char* markerChannel = "tulsar_tarnly_1.0";
constexpr int channelTypeSize = 64;

constexpr std::size_t channelIdSize = 256;
constexpr int defaultUpdateTime = 60;

/// A module from the library loader, given back only when this reference was taken here.
class LoadedModule {
public:
    LoadedModule(const wchar_t* name, const wchar_t* directory)
        : handle(loadLibraryChecked(name, directory, &owned)) {}
    ~LoadedModule() {
        if (owned) {
            platform::freeModule(handle);
        }
    }
    LoadedModule(const LoadedModule&) = delete;
    LoadedModule& operator=(const LoadedModule&) = delete;

    platform::ModuleHandle get() const { return handle; }
    void keep() { owned = false; }

private:
    bool owned = false;
    platform::ModuleHandle handle;
};

struct ClientWindow {
    const wchar_t* instance;
    const char* logLine;
};

constexpr std::array<ClientWindow, 4> clientWindows{{
    {L"TULSAR.INSTANCE", "update plugin, can restart tray, safe is exist."},
    {L"XNSETTINGUI.INSTANCE", "update plugin, can restart tray, settingui is exist."},
    {L"XNOPERATECENTER.INSTANCE", "update plugin, can restart tray, operatecenter is exist."},
    {L"XNREPAIR.INSTANCE", "update plugin, can restart tray, repair is exist."},
}};

bool isValid(uc::IUserState* state) {
    return state && state->isValid();
}

} // namespace

namespace utils {

std::string getAppDir() {
    return platform::removeFileSpec(platform::executablePath());
}

std::string getChannelType() {
    // The host's thread and a worker ask at once. The later one would find the module of the
    // earlier one loaded, take no reference of its own, and run into code that the earlier frees.
    static Mutex& loading = *new Mutex;
    const MutexLock guard(loading);
    if (const LoadedModule marker(markerModule, markerFolder); marker.get()) {
        XLOG(logProgress, "there is tarnlyoem.dll, this ver is tarnly.");
        return markerChannel;
    }
    LoadedModule module(L"OrvSecurityver.dll", L"");
    if (!module.get()) {
        XLOG(logFault, "load OrvSecurityver.dll failed. err:", platform::lastError());
        return {};
    }
    using GetChannelType = int (*)(char*, int*);
    const auto call =
        reinterpret_cast<GetChannelType>(platform::findExport(module.get(), "GetChannelType"));
    if (!call) {
        XLOG(logFault, "get channeltype process failed. err:", platform::lastError());
        module.keep(); // on this path the module stays loaded
        return {};
    }
    std::array<char, channelTypeSize + 1> buffer{};
    int length = channelTypeSize;
    call(buffer.data(), &length);
    return buffer.data();
}

std::string getSecurityVersion() {
    bool isFileVersion = false;
    return getFileVersion("OrvSecurityver.dll", &isFileVersion);
}

std::string getDataVersion() {
    return getDataFileVersion("update\\version.dat");
}

std::string getOSVersion(bool fourParts) {
    const ServicePtr<IXNBaseInfo> info(L"module.base");
    if (!info) {
        return {};
    }
    constexpr std::uint32_t value = 1;
    const void* answer = info->query(IXNBaseInfo::osVersionCode, &value);
    if (!answer) {
        return {};
    }
    XOsVersionRecord record;
    std::memcpy(&record, answer, sizeof(record));
    const std::string version = std::to_string(record.major) + "." + std::to_string(record.minor) +
                                "." + std::to_string(record.build);
    return fourParts ? version + ".0" : version;
}

bool canRestartTray() {
    const ServicePtr<IXNGuardBase> guard(L"module.xnguardbase");
    if (!guard) {
        XLOG(logFault, "update plugin, can restart tray, xnguardbase nil.");
        return true;
    }
    for (const ClientWindow& window : clientWindows) {
        if (guard->instanceExists(window.instance, 0) != 0) {
            XLOG(logProgress, window.logLine);
            return false;
        }
    }
    return true;
}

bool isLogined() {
    uc::IUserCenter* center = hostmodules::getUserCenter();
    uc::IUserState* token = center ? center->tokenState() : nullptr;
    uc::IUserState* device = center ? center->deviceState() : nullptr;
    uc::IUserState* service = center ? center->serviceState() : nullptr;
    if (!isValid(token)) {
        XLOG(logProgress, "update plugin, isLogined, token invalid.");
        return false;
    }
    if (!isValid(device)) {
        XLOG(logProgress, "update plugin, isLogined, device invalid.");
        return false;
    }
    if (!isValid(service)) {
        XLOG(logProgress, "update plugin, isLogined, srv closed.");
        return false;
    }
    XLOG(logProgress, "update plugin, isLogined, logined.");
    return true;
}

bool readTestConfig(std::string& channelId, int& updateTime, bool& testParam) {
    const std::string file = getAppDir() + "\\test_update_kelvar.ini";
    if (getAppDir().empty() || !platform::fileExists(file)) {
        return false;
    }
    constexpr const char* section = "Kelvar";
    channelId = platform::profileString(file, section, "channel_id", "", channelIdSize);
    updateTime = platform::profileInt(file, section, "update_time", defaultUpdateTime);
    testParam = platform::profileInt(file, section, "test_param", 0) != 0;
    return true;
}

} // namespace utils
