#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>

#include "host/hostmodules.h"
#include "host/objectloader.h"
#include "support/fakehost.h"
#include "xrefresher.h"

namespace {

constexpr const wchar_t* modules[] = {L"xnbase.dll", L"xnuser.dll", L"xnquiet.dll",
                                      L"XNSetting.dll", L"xnplugins\\xrefresher.dll"};

/// Calls every binding; each must give its neutral answer.
void expectAllNeutral() {
    wchar_t buffer[8] = {};
    EXPECT_EQ(hostmodules::getFileVer(), nullptr);
    hostmodules::event("", "", "", "", "", "", "");
    hostmodules::postTask(0, nullptr);
    EXPECT_FALSE(hostmodules::homeDirectory(1, buffer, 8));
    EXPECT_EQ(hostmodules::envConfigInstance(), nullptr);
    EXPECT_EQ(hostmodules::newRequestHeader(), nullptr);
    EXPECT_EQ(hostmodules::newRequest(nullptr, "", 0), nullptr);
    hostmodules::asyncHttp(2, "", nullptr, nullptr);
    hostmodules::runProcess(L"a.exe", L"");
    EXPECT_EQ(hostmodules::getUserCenter(), nullptr);
    EXPECT_EQ(hostmodules::isMuteMode(), 0);
    EXPECT_EQ(hostmodules::getKV(), nullptr);
    EXPECT_EQ(hostmodules::getNotificationCenter(), nullptr);
    EXPECT_EQ(hostmodules::getUpdateKelvar(), nullptr);
    EXPECT_EQ(loadLibraryChecked(L"x.dll", L""), nullptr);
}

TEST(BindingTest, AMissingModuleGivesTheNeutralAnswers) {
    FakeHost host;
    for (const wchar_t* module : modules) {
        host.without(module);
    }
    expectAllNeutral();
}

TEST(BindingTest, AMissingExportGivesTheNeutralAnswers) {
    FakeHost host;
    for (const wchar_t* module : modules) {
        fake::addModule(module, {}, fake::Presence::loaded);
    }
    expectAllNeutral();
}

TEST(BindingTest, TheBaseModuleIsNeverLoadedForItsExports) {
    FakeHost host;
    for (const wchar_t* module : modules) {
        host.without(module);
    }
    fake::addModule(L"xnbase.dll", {}, fake::Presence::loadable);
    expectAllNeutral(); // runProcess included: the loader it needs is in the absent module
    EXPECT_EQ(fake::references(L"xnbase.dll"), 0);
}

TEST(BindingTest, ALoadedModuleIsFoundAndAnAbsentOneLoadedOnce) {
    FakeHost host;
    bool loaded = true;
    EXPECT_NE(loadLibraryChecked(L"OrvBase.dll", L"", &loaded), nullptr);
    EXPECT_FALSE(loaded);
    hostmodules::isMuteMode();
    hostmodules::isMuteMode();
    EXPECT_EQ(fake::references(L"xnquiet.dll"), 1);
    hostmodules::getKV();
    hostmodules::getKV();
    EXPECT_EQ(fake::references(L"XNSetting.dll"), 1);
}

TEST(BindingTest, AWrongSignatureEndsTheProcess) {
    FakeHost host;
    host.badSignatures = {L"xnuser.dll", L"xnquiet.dll"};
    try {
        hostmodules::getUserCenter();
        FAIL() << "the process went on";
    } catch (const fake::ProcessEnded& ended) {
        EXPECT_EQ(ended.title, "Error");
        EXPECT_EQ(ended.text, "Signature verification failed!\n\nLibrary : xnuser.dll\n\n");
        EXPECT_EQ(ended.exitCode, -1);
    }
    EXPECT_EQ(hostmodules::isMuteMode(), 0); // a plain load tests no signature
}

TEST(ObjectTest, CreateTellsWhatIsMissing) {
    FakeHost host;
    host.withoutId(L"module.libcurl");
    void* object = nullptr;
    EXPECT_EQ(XNModuleRef(L"module.libcurl").create(IXCurlService::id, nullptr),
              orv::invalidArgument); // ahead of any look at the module
    EXPECT_EQ(XNModuleRef(L"module.libcurl").create(IXCurlService::id, &object), orv::noInterface);
    EXPECT_EQ(XNModuleRef(L"module.base").create(IXCurlService::id, &object), orv::noInterface);
    EXPECT_EQ(XNModuleRef(L"module.base").create(IXNBaseInfo::id, &object), orv::ok);
    EXPECT_NE(object, nullptr);
    EXPECT_FALSE(ServicePtr<IXCurlService>(L"module.libcurl"));
}

TEST(ObjectDeathTest, ARegistryThatIsAbsentAtTheFirstUseStaysAbsent) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process that has used none yet
    EXPECT_EXIT(
        {
            FakeHost host;
            host.without(L"OrvBase.dll");
            const bool first = static_cast<bool>(ServicePtr<IXNBaseInfo>(L"module.base"));
            FakeHost healthy;
            const bool second = static_cast<bool>(ServicePtr<IXNBaseInfo>(L"module.base"));
            std::exit(first || second ? 1 : 0);
        },
        testing::ExitedWithCode(0), "");
}

TEST(VersionServiceTest, ReadsTheVersionOrSaysThatNoneIsKnown) {
    constexpr const char* path = "update\\virtuslib.dat";
    FakeHost host;
    XRefresher::IUpdateKelvar* service = GetUpdateKelvar();
    const auto version = [&] {
        std::string buffer(XRefresher::IUpdateKelvar::versionSize + 1, '?');
        service->getVersion(buffer.data());
        EXPECT_EQ(buffer.back(), '?') << "written past the end";
        buffer.pop_back();
        return buffer.substr(0, buffer.find('\0'));
    };
    EXPECT_EQ(version(), "0000-00-00");
    EXPECT_EQ(service->setVersion("2026-01-02"), 0);
    EXPECT_EQ(version(), "2026-01-02");
    EXPECT_EQ(service->setVersion("2026-01-03"), 0);
    EXPECT_EQ(host.versions.calls, (std::vector<std::string>{std::string("create ") + path,
                                                             std::string("update ") + path}));
    host.versions.entries[path] = std::string(128, 'v'); // no end within the buffer
    EXPECT_EQ(version(), std::string(127, 'v'));
    host.versions.entries[path] = "2026-01-03";
    host.versions.result = 5; // a failure counts even when it also told a length
    EXPECT_EQ(version(), "0000-00-00");
    EXPECT_EQ(service->setVersion("2026-01-04"), 0);
    host.without(L"xnbase.dll", "getFileVer");
    EXPECT_EQ(version(), std::string(128, '?'));
    EXPECT_EQ(service->setVersion("x"), -1);
    service->release();
}

} // namespace
