#include <atomic>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <thread>

#include "host/ikeyvaluestore.h"
#include "host/usercenter.h"
#include "host/xnbase.h"
#include "moduleslab.h"
#include "platform/text.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/modules/xnbase/listener.h"

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
    struct Row {
        const char* key;
        std::uint32_t stringSize;
        bool is64;
        bool is32;
    };
    for (const Row& row : {Row{"text", 6, false, false}, Row{"small", 0, true, true},
                           Row{"big", 0, true, false}, Row{"negative", 0, false, false},
                           Row{"real", 0, false, false}, Row{"absent", 0, false, false}}) {
        SCOPED_TRACE(row.key);
        std::uint32_t size = 0;
        std::uint64_t wide = 0;
        std::uint32_t narrow = 0;
        EXPECT_EQ(settings().getString(row.key, nullptr, &size), row.stringSize > 0);
        EXPECT_EQ(size, row.stringSize);
        EXPECT_EQ(settings().getUInt64(row.key, &wide), row.is64);
        EXPECT_EQ(settings().getUInt32(row.key, &narrow), row.is32);
    }
}

TEST(ModuleSettings, FillsABufferThatIsLargeEnough) {
    char buffer[8] = "-------";
    std::uint32_t size = 5;
    EXPECT_FALSE(settings().getString("text", buffer, &size));
    EXPECT_STREQ(buffer, "-------");
    EXPECT_EQ(size, 6U);
    EXPECT_TRUE(settings().getString("text", buffer, &size));
    EXPECT_STREQ(buffer, "value");
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
    ASSERT_EQ(events.of("version").size(), 2U);
    EXPECT_EQ(events.of("version")[0]["created"], true);
}

TEST(ModuleVersions, ATextBeyondTheBufferFails) {
    ASSERT_EQ(versions().createVersion("long", std::string(64, '1').c_str()), 0);
    EXPECT_EQ(versionOf("long"), "-1 0 ");
}

TEST(ModuleLog, WritesOneLineAndTellsTheListener) {
    const lab::Events events;
    std::string heard;
    const auto listen = lab::bind<sandbox::SetLogListener>(L"xnbase.dll", "sandboxSetLogListener");
    listen([](const char* function, const char* text,
              void* into) { *static_cast<std::string*>(into) = std::string(function) + text; },
           &heard);
    lab::bind<xnbase::writeLog>(L"xnbase.dll", "writeLog")(4, "a.cpp", 12, "X::f", "two\nlines ",
                                                           10);
    listen(nullptr, nullptr);
    EXPECT_EQ(heard, "X::ftwo\nlines ");
    EXPECT_EQ(events.of("log").at(0)["text"], "two\nlines ");
    std::string last;
    std::ifstream log(sandbox::processFolders().log());
    for (std::string line; std::getline(log, line);) {
        last = line;
    }
    EXPECT_TRUE(
        std::regex_match(last, std::regex(R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} \[4\] \[\d+\] )"
                                          R"(X::f \(a\.cpp:12\) two\\nlines )")))
        << last;
}

TEST(ModuleClient, TellsTheHomeFolderOnlyWhenItFits) {
    const auto home = lab::bind<xnbase::homeDirectory>(L"xnbase.dll", "homeDirectory");
    const std::string wanted = sandbox::toClientPath(sandbox::processFolders().home());
    const int size = static_cast<int>(wanted.size());
    std::vector<wchar_t> buffer(wanted.size() + 1);
    EXPECT_FALSE(home(1, buffer.data(), size));
    EXPECT_FALSE(home(1, nullptr, 260));
    EXPECT_TRUE(home(1, buffer.data(), size + 1));
    EXPECT_EQ(platform::toUtf8(buffer.data()), wanted);
}

TEST(ModuleClient, AnswersFromTheConfiguration) {
    auto* env = lab::bind<xnbase::envConfigInstance>(L"xnbase.dll", "envConfigInstance")();
    EXPECT_STREQ(env->serverAddress(), "http://127.0.0.1:1");
    EXPECT_EQ(env->upgradeAddress(), nullptr);
    EXPECT_EQ(lab::bind<int (*)()>(L"xnquiet.dll", "IsMuteMode")(), 7);
    auto* users = lab::bind<uc::IUserCenter* (*)()>(L"xnuser.dll", "GetUserCenter")();
    EXPECT_TRUE(users->tokenState()->isValid());
    EXPECT_FALSE(users->deviceState()->isValid());
    EXPECT_TRUE(users->serviceState()->isValid());
    EXPECT_STREQ(users->tokenState()->identity(), "1001-2002-x");
}

TEST(ModuleClient, ChannelTypeNeedsRoomForItsZero) {
    const auto channel = lab::bind<int (*)(char*, int*)>(L"OrvSecurityver.dll", "GetChannelType");
    for (const auto& [size, result] : {std::pair(64, 0), std::pair(10, 0), std::pair(9, -1)}) {
        char buffer[64] = {};
        int length = size;
        EXPECT_EQ(channel(buffer, &length), result) << size;
        EXPECT_EQ(length, 9);
        EXPECT_STREQ(buffer, result == 0 ? "a_channel" : "");
    }
}

} // namespace
