#include "host/iupdatekelvar.h"
#include "host/ixtrayplugin.h"
#include "platform/modules.h"

#include <array>
#include <gtest/gtest.h>

// The shipped library in a process that has none of the client's modules.

namespace {

using platform::ModuleHandle;

constexpr const wchar_t* plugin = L"xrefresher.dll";

template <class Function>
Function exported(ModuleHandle module, const char* name) {
    void* const found = platform::findExport(module, name);
    EXPECT_NE(found, nullptr) << name;
    return reinterpret_cast<Function>(found);
}

TEST(BareProcess, LoadsAndUnloadsIt) {
    for (int round = 0; round < UNLOADS; ++round) {
        const ModuleHandle module = platform::loadModule(plugin);
        ASSERT_NE(module, nullptr);
        auto* service = exported<XRefresher::IUpdateKelvar* (*)()>(module, "GetUpdateKelvar")();
        std::array<char, 128> version{};
        service->getVersion(version.data());
        EXPECT_STREQ(version.data(), "");
        service->release();
        platform::freeModule(module);
        EXPECT_EQ(platform::findModule(plugin), nullptr);
    }
}

TEST(BareProcess, TicksIt) {
    const ModuleHandle module = platform::loadModule(plugin);
    ASSERT_NE(module, nullptr);
    static xtray::IXTrayPlugin* object = nullptr; // it is never freed
    object = exported<xtray::IXTrayPlugin* (*)()>(module, "CreateUpdatePlugin")();
    ASSERT_NE(object, nullptr);
    EXPECT_TRUE(object->start(nullptr));
    for (int tick = 0; tick < 3; ++tick) {
        object->tick();
    }
}

} // namespace
