#include <gtest/gtest.h>

#include "host/orvobject.h"
#include "host/xnbase.h"
#include "moduleslab.h"

namespace {

constexpr orv::GUID noId{1, 2, 3, {}};

template <class Interface>
Interface* make(const wchar_t* module) {
    void* object = nullptr;
    EXPECT_EQ(lab::bind<orv::CreateOrvObject>(module, "CreateOrvObject")(Interface::id, &object),
              orv::ok);
    return static_cast<Interface*>(object);
}

TEST(ModuleObjects, FactoriesKnowTheirIdsOnly) {
    struct Row {
        const wchar_t* module;
        orv::GUID id;
        long result;
    };
    const Row rows[] = {
        {L"OrvBase.dll",
         {0xDCBDC082, 0x7349, 0x4FB8, {0x88, 0x50, 0x35, 0x04, 0xCB, 0x47, 0x7C, 0x72}},
         orv::ok},
        {L"OrvBase.dll",
         {0x52203844, 0x735C, 0x447B, {0xAC, 0xBC, 0x73, 0x45, 0x63, 0x37, 0x67, 0x2C}},
         orv::ok},
        {L"OrvBase.dll",
         {0xFC588690, 0x8589, 0x4EDA, {0xBB, 0xB4, 0x2E, 0x41, 0x96, 0x4C, 0xB5, 0x80}},
         orv::ok},
        {L"XNGuardBase.dll",
         {0x427FB576, 0xCFB6, 0x4786, {0x94, 0x0D, 0xE1, 0xD0, 0x0E, 0x55, 0x21, 0xBA}},
         orv::ok},
        {L"OrvBase.dll", noId, orv::noInterface},
        {L"XNGuardBase.dll", IXModuleRegistry::id, orv::noInterface},
        {L"xncurl.dll", noId, orv::noInterface}};
    for (const Row& row : rows) {
        const auto create = lab::bind<orv::CreateOrvObject>(row.module, "CreateOrvObject");
        void* object = &object;
        EXPECT_EQ(create(row.id, &object), row.result);
        EXPECT_EQ(object != nullptr, row.result == orv::ok);
        EXPECT_EQ(create(row.id, nullptr), orv::invalidArgument);
        if (object) {
            EXPECT_EQ(static_cast<orv::IUnknown*>(object)->Release(), 0U);
        }
    }
}

TEST(ModuleObjects, CountReferences) {
    auto* info = make<IXNBaseInfo>(L"OrvBase.dll");
    void* same = nullptr;
    EXPECT_EQ(info->QueryInterface(IXNBaseInfo::id, &same), orv::ok);
    EXPECT_EQ(same, info);
    EXPECT_EQ(info->QueryInterface(noId, &same), orv::noInterface);
    EXPECT_EQ(same, nullptr);
    EXPECT_EQ(info->AddRef(), 3U);
    EXPECT_EQ(info->Release(), 2U);
    EXPECT_EQ(info->Release(), 1U);
    EXPECT_EQ(info->Release(), 0U);
}

TEST(ModuleObjects, TellTheSystemAndTheOpenWindows) {
    auto* info = make<IXNBaseInfo>(L"OrvBase.dll");
    const std::uint32_t value = 1;
    const auto* os =
        static_cast<const XOsVersionRecord*>(info->query(IXNBaseInfo::osVersionCode, &value));
    EXPECT_EQ(os->size, 284U);
    EXPECT_EQ(os->major, 10U);
    EXPECT_EQ(os->build, 19045U);
    EXPECT_EQ(info->query(1, &value), nullptr);
    info->Release();
    auto* guard = make<IXNGuardBase>(L"XNGuardBase.dll");
    EXPECT_NE(guard->instanceExists(L"TULSAR.INSTANCE", 0), 0);
    EXPECT_EQ(guard->instanceExists(L"XNREPAIR.INSTANCE", 0), 0);
    guard->Release();
}

TEST(ModuleObjects, RegistryResolvesAndLoads) {
    auto* registry = make<IXModuleRegistry>(L"OrvBase.dll");
    EXPECT_EQ(registry->resolve(L"module.base"), platform::findModule(L"OrvBase.dll"));
    const platform::ModuleHandle curl = registry->resolve(L"module.libcurl");
    EXPECT_NE(curl, nullptr);
    EXPECT_EQ(curl, platform::findModule(L"xncurl.dll"));
    EXPECT_EQ(registry->resolve(L"module.xnguardbase"), nullptr); // declared absent
    EXPECT_EQ(registry->resolve(L"module.base.win32"), nullptr);
    EXPECT_EQ(registry->resolve(nullptr), nullptr);
    registry->Release();
}

TEST(ModuleLoader, TestsTheSignatureBeforeItLoads) {
    struct Row {
        const wchar_t* name;
        int error;
        const char* result;
    };
    const auto load = lab::bind<xnbase::loadXNLibrary>(L"xnbase.dll", "loadXNLibrary");
    for (const Row& row : {Row{L"xnuser.dll", 0, "loaded"}, Row{L"absent.dll", -1, "missing"},
                           Row{L"bad.DLL", xnbase::signatureError, "badSignature"}}) {
        const lab::Events events;
        int error = 0;
        const platform::ModuleHandle module = load(row.name, L"", true, &error);
        EXPECT_EQ(error, row.error);
        EXPECT_EQ(module != nullptr, row.error == 0);
        EXPECT_EQ(events.of("library").at(0)["result"], row.result);
        platform::freeModule(module);
    }
}

} // namespace
