#include <cwchar>

#include "sandbox/modules/orv/comobject.h"

// OrvBase.dll of a measured client: the system's version, and where the service of libcurl is.

namespace {

class BaseInfo final : public sandbox::ComObject<IXNBaseInfo> {
public:
    BaseInfo() : ComObject(IXNBaseInfo::id) {}
    void reserved3() override {}
    const void* query(std::uint32_t code, const std::uint32_t* /*value*/) override {
        return code == osVersionCode ? &record : nullptr;
    }

private:
    XOsVersionRecord record{sizeof(XOsVersionRecord), 10, 0, 19045, {}};
};

class Registry final : public sandbox::ComObject<IXModuleRegistry> {
public:
    Registry() : ComObject(IXModuleRegistry::id) {}
    platform::ModuleHandle resolve(const wchar_t* moduleId) override {
        if (std::wcscmp(moduleId, L"module.libcurl") == 0) {
            return curl;
        }
        return std::wcscmp(moduleId, L"module.base") == 0 ? base : nullptr;
    }

private:
    const platform::ModuleHandle curl = platform::loadModule(L"xncurl.dll");
    const platform::ModuleHandle base = platform::findModule(L"OrvBase.dll");
};

} // namespace

extern "C" long CreateOrvObject(const orv::GUID& id, void** object) {
    *object = nullptr;
    if (id == IXModuleRegistry::id) {
        return sandbox::handOut<IXModuleRegistry>(new Registry, object);
    }
    return id == IXNBaseInfo::id ? sandbox::handOut<IXNBaseInfo>(new BaseInfo, object)
                                 : orv::noInterface;
}
