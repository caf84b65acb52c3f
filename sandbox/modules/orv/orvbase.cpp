#include <algorithm>
#include <string>
#include <vector>

#include "platform/modules.h"
#include "platform/text.h"
#include "sandbox/common/config.h"
#include "sandbox/modules/orv/comobject.h"

namespace {

struct Installed {
    const char* moduleId;
    const wchar_t* file;
};

constexpr Installed installedModules[] = {
    {"module.base", L"OrvBase.dll"},
    {"module.xnguardbase", L"XNGuardBase.dll"},
    {"module.libcurl", L"xncurl.dll"},
};

/// Objects that the client's modules hold and nobody calls.
constexpr orv::GUID inertIds[] = {
    {0xDCBDC082, 0x7349, 0x4FB8, {0x88, 0x50, 0x35, 0x04, 0xCB, 0x47, 0x7C, 0x72}},
    {0x52203844, 0x735C, 0x447B, {0xAC, 0xBC, 0x73, 0x45, 0x63, 0x37, 0x67, 0x2C}},
    {0xFC588690, 0x8589, 0x4EDA, {0xBB, 0xB4, 0x2E, 0x41, 0x96, 0x4C, 0xB5, 0x80}},
};

class Registry final : public sandbox::ComObject<IXModuleRegistry> {
public:
    Registry() : ComObject(IXModuleRegistry::id) {}

    platform::ModuleHandle resolve(const wchar_t* moduleId) override {
        const std::string wanted = moduleId ? platform::toUtf8(moduleId) : "";
        if (std::find(absentIds.begin(), absentIds.end(), wanted) != absentIds.end()) {
            return nullptr;
        }
        for (const Installed& module : installedModules) {
            if (wanted == module.moduleId) {
                const platform::ModuleHandle handle = platform::findModule(module.file);
                // One loaded here stays for good: resolving gives no reference out.
                return handle ? handle : platform::loadModule(module.file);
            }
        }
        return nullptr;
    }

private:
    const std::vector<std::string> absentIds = sandbox::readConfig().absentIds;
};

class BaseInfo final : public sandbox::ComObject<IXNBaseInfo> {
public:
    BaseInfo() : ComObject(IXNBaseInfo::id) {
        const sandbox::Config::Os os = sandbox::readConfig().os;
        record.size = sizeof record;
        record.major = os.major;
        record.minor = os.minor;
        record.build = os.build;
    }

    void reserved3() override {}
    const void* query(std::uint32_t code, const std::uint32_t* /*value*/) override {
        return code == osVersionCode ? &record : nullptr;
    }

private:
    XOsVersionRecord record{};
};

} // namespace

extern "C" long CreateOrvObject(const orv::GUID& id, void** object) {
    if (!object) {
        return orv::invalidArgument;
    }
    *object = nullptr;
    if (id == IXModuleRegistry::id) {
        return sandbox::handOut<IXModuleRegistry>(new Registry, object);
    }
    if (id == IXNBaseInfo::id) {
        return sandbox::handOut<IXNBaseInfo>(new BaseInfo, object);
    }
    if (std::find(std::begin(inertIds), std::end(inertIds), id) != std::end(inertIds)) {
        return sandbox::handOut<orv::IUnknown>(new sandbox::ComObject<>(id), object);
    }
    return orv::noInterface;
}
