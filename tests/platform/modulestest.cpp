#include "platform/modules.h"
#include "platform/lasterror.h"
#include "platform/process.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;

TEST(Modules, AreFoundWhileTheyAreLoaded) {
    const std::pair<const wchar_t*, const wchar_t*> rows[] = {
        {L"PlatformTest.dll", L"platformTEST.DLL"},
        {L"platformtest", L"PlatformTest.dll"},
        {L"parts\\PlatformPart.dll", L"Parts\\platformpart.dll"},
        {L"parts\\PlatformPart.dll", L"PlatformPart.dll"}};
    for (const auto& [loadName, findName] : rows) {
        SCOPED_TRACE(testing::PrintToString(loadName));
        EXPECT_EQ(findModule(findName), nullptr);
        const ModuleHandle module = loadModule(loadName);
        ASSERT_NE(module, nullptr);
        EXPECT_EQ(loadModule(loadName), module);
        freeModule(module);
        EXPECT_EQ(findModule(findName), module);
        freeModule(module);
        EXPECT_EQ(findModule(findName), nullptr);
    }
}

TEST(Modules, OnlyTheHostsFolderCounts) {
    for (const wchar_t* name : {L"absent.dll", L"PlatformPart.dll", L"librt.so.1",
                                L"parts\\absent.dll", L"absent\\PlatformTest.dll"}) {
        setLastError(errorNone);
        EXPECT_EQ(loadModule(name), nullptr) << testing::PrintToString(name);
        EXPECT_EQ(lastError(), errorModuleNotFound);
    }
    freeModule(nullptr);
}

TEST(Modules, HaveTheirOwnExports) {
    const ModuleHandle module = loadModule(L"PlatformTest.dll");
    const auto answer = reinterpret_cast<int (*)(const char*)>(findExport(module, "testAnswer"));
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer("four"), 4);
    for (const char* name : {"absent", "strlen", "TESTANSWER"}) {
        setLastError(errorNone);
        EXPECT_EQ(findExport(module, name), nullptr) << name;
        EXPECT_EQ(lastError(), errorProcNotFound);
    }
    EXPECT_EQ(findExport(nullptr, "testAnswer"), nullptr);
    freeModule(module);
}

TEST(Process, TellsTheNameOfItsExecutable) {
    EXPECT_TRUE(executableName().starts_with("platform_tests")) << executableName();
}

} // namespace
