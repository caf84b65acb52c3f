#include <atomic>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <thread>

#include "host/ikeyvaluestore.h"
#include "host/xnbase.h"
#include "moduleslab.h"
#include "platform/text.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/jsonfile.h"

namespace {

IKeyValueStore& settings() {
    return *lab::bind<IKeyValueStore* (*)()>(L"XNSetting.dll", "GetKV")();
}

IFileVersionStore& versions() {
    return *lab::bind<xnbase::getFileVer>(L"xnbase.dll", "getFileVer")();
}

std::string versionOf(const char* path) {
    char buffer[IFileVersionStore::bufferSize] = {};
    int length = -1;
    const int result = versions().getVersion(path, buffer, &length);
    return std::to_string(result) + ' ' + std::to_string(length) + ' ' + buffer;
}

TEST(ModuleSettings, ReadsByKind) {
    const struct {
        const char* key;
        bool isText, is64, is32;
    } rows[] = {{"text", true, false, false},  {"small", false, true, true},
                {"big", false, true, false},   {"negative", false, false, false},
                {"real", false, false, false}, {"absent", false, false, false}};
    for (const auto& row : rows) {
        std::uint32_t size = 0;
        std::uint64_t wide = 0;
        std::uint32_t narrow = 0;
        EXPECT_EQ(settings().getString(row.key, nullptr, &size), row.isText) << row.key;
        EXPECT_EQ(size, row.isText ? sizeof "value" : 0) << row.key;
        EXPECT_EQ(settings().getUInt64(row.key, &wide), row.is64) << row.key;
        EXPECT_EQ(settings().getUInt32(row.key, &narrow), row.is32) << row.key;
    }
}

TEST(ModuleSettings, EveryWriteReplacesTheWholeFile) {
    const auto file = sandbox::processFolders().settings();
    std::atomic<bool> finished{false};
    int damaged = 0;
    std::thread reader([&] {
        while (!finished) {
            damaged += sandbox::readJson(file) ? 0 : 1;
        }
    });
    for (std::uint64_t i = 0; i < 50; ++i) {
        ASSERT_TRUE(settings().setString("long", std::string(i * 1000, 'x').c_str()));
        ASSERT_TRUE(settings().setUInt64("count", i));
    }
    finished = true;
    reader.join();
    EXPECT_EQ(damaged, 0);
    EXPECT_EQ(sandbox::readJson(file)->at("count"), 49);
    EXPECT_EQ(sandbox::readJson(file)->at("text"), "value");
}

TEST(ModuleSettings, AFailedWriteChangesNothing) {
    const auto file = sandbox::processFolders().settings();
    EXPECT_FALSE(settings().setString("text", "\xff no UTF-8"));
    std::filesystem::create_directory(file.string() + ".new");
    const lab::Events events;
    EXPECT_FALSE(settings().setString("text", "other"));
    std::filesystem::remove(file.string() + ".new");
    char buffer[8] = {};
    std::uint32_t size = sizeof buffer;
    EXPECT_TRUE(settings().getString("text", buffer, &size));
    EXPECT_STREQ(buffer, "value");
    EXPECT_TRUE(events.of("setting").empty());
}

TEST(ModuleVersions, KeepsWhatItIsGiven) {
    const lab::Events events;
    EXPECT_EQ(versionOf("Update/VERSION.dat"), "0 3 1.2");
    EXPECT_EQ(versionOf("odd"), "0 0 ");
    EXPECT_NE(versions().updateVersion("bin\\New.dat", "1"), 0);
    EXPECT_EQ(versions().createVersion("bin\\New.dat", "1"), 0);
    EXPECT_NE(versions().createVersion("BIN\\new.dat", "2"), 0);
    EXPECT_EQ(versions().updateVersion("BIN/new.dat", "3"), 0);
    EXPECT_EQ(versionOf("bin\\new.dat"), "0 1 3");
    EXPECT_EQ(sandbox::readJson(sandbox::processFolders().versions())->at("bin\\New.dat"), "3");
    EXPECT_EQ(events.of("version").size(), 2U);
    ASSERT_EQ(versions().createVersion("long", std::string(64, '1').c_str()), 0);
    EXPECT_EQ(versionOf("long"), "-1 0 ");
}

TEST(ModuleLog, WritesOneLine) {
    lab::bind<xnbase::writeLog>(L"xnbase.dll", "writeLog")(4, "a.cpp", 12, "X::f", "two\nlines ",
                                                           10);
    std::string last;
    std::ifstream log(sandbox::processFolders().log());
    for (std::string line; std::getline(log, line);) {
        last = line;
    }
    const std::regex wanted(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \[4\] \[\d+\] )"
                            R"(X::f \(a\.cpp:12\) two\\nlines )");
    EXPECT_TRUE(std::regex_match(last, wanted)) << last;
}

TEST(ModuleTexts, NeedRoomForTheirZero) {
    const auto home = lab::bind<xnbase::homeDirectory>(L"xnbase.dll", "homeDirectory");
    const auto channel = lab::bind<int (*)(char*, int*)>(L"OrvSecurityver.dll", "GetChannelType");
    const std::string folder = sandbox::toClientPath(sandbox::processFolders().home());
    EXPECT_FALSE(home(1, nullptr, 260));
    for (const bool fits : {false, true}) {
        std::wstring path(folder.size() + 1, L'-');
        EXPECT_EQ(home(1, path.data(), static_cast<int>(folder.size() + fits)), fits);
        EXPECT_EQ(path.front() != L'-', fits);
        EXPECT_TRUE(!fits || path.c_str() == platform::toWide(folder));
        std::string text = "----------";
        int length = 9 + fits;
        EXPECT_EQ(channel(text.data(), &length), fits ? 0 : -1);
        EXPECT_EQ(length, 9);
        EXPECT_STREQ(text.c_str(), fits ? "a_channel" : "----------");
        text = "------";
        std::uint32_t size = 5 + fits;
        EXPECT_EQ(settings().getString("text", text.data(), &size), fits);
        EXPECT_EQ(size, 6U);
        EXPECT_STREQ(text.c_str(), fits ? "value" : "------");
    }
}

} // namespace
