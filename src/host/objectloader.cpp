#include "host/objectloader.h"

namespace {

constexpr const char* factoryExport = "CreateOrvObject";

orv::CreateOrvObject factoryOf(platform::ModuleHandle module) {
    return reinterpret_cast<orv::CreateOrvObject>(platform::findExport(module, factoryExport));
}

/// Process-wide objects of the modules that are loaded when it is made. Read-only
/// afterwards, never released.
class ObjectLoader {
public:
    static const ObjectLoader& instance() {
        static const ObjectLoader loader;
        return loader;
    }

    platform::ModuleHandle resolve(const wchar_t* moduleId) const {
        auto* modules = static_cast<IXModuleRegistry*>(registry);
        return modules ? modules->resolve(moduleId) : nullptr;
    }

private:
    ObjectLoader() {
        fill(guard, L"XNGuardBase.dll",
             {0x427FB576, 0xCFB6, 0x4786, {0x94, 0x0D, 0xE1, 0xD0, 0x0E, 0x55, 0x21, 0xBA}});
        fill(registry, base, IXModuleRegistry::id);
        fill(second, base,
             {0xDCBDC082, 0x7349, 0x4FB8, {0x88, 0x50, 0x35, 0x04, 0xCB, 0x47, 0x7C, 0x72}});
        fill(third, base,
             {0x52203844, 0x735C, 0x447B, {0xAC, 0xBC, 0x73, 0x45, 0x63, 0x37, 0x67, 0x2C}});
        fill(fourth, base,
             {0xFC588690, 0x8589, 0x4EDA, {0xBB, 0xB4, 0x2E, 0x41, 0x96, 0x4C, 0xB5, 0x80}});
    }

    static void fill(void*& object, const wchar_t* module, const orv::GUID& id) {
        const orv::CreateOrvObject create = factoryOf(platform::findModule(module));
        if (!object && create) {
            create(id, &object);
        }
    }

    static constexpr const wchar_t* base = L"OrvBase.dll";

    void* guard = nullptr;
    void* registry = nullptr;
    // Held for the process as the client's modules expect; nothing here calls them.
    void* second = nullptr;
    void* third = nullptr;
    void* fourth = nullptr;
};

} // namespace

XNModuleRef::XNModuleRef(const wchar_t* moduleId)
    : factory(factoryOf(ObjectLoader::instance().resolve(moduleId))) {}

long XNModuleRef::create(const orv::GUID& interfaceId, void** object) const {
    if (!object) {
        return orv::invalidArgument;
    }
    if (!factory) {
        return orv::noInterface;
    }
    return factory(interfaceId, object);
}
