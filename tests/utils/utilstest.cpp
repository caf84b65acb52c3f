#include <atomic>
#include <chrono>
#include <gtest/gtest.h>
#include <thread>

#include "sandbox/materials/pefile.h"
#include "support/fakehost.h"
#include "utils/utils.h"

namespace {

TEST(VersionTest, ComparesPartByPartAndTheLongerWins) {
    struct Row {
        const char* a;
        const char* b;
        int result;
    };
    const Row rows[] = {
        {"1.2", "1.2.0", -1},
        {"1.2.0", "1.2", 1},
        {"1.10", "1.9", 1},
        {"1.2.3", "1.2.3", 0},
        {"1.01", "1.1", 0},
        {"", "0", 0},
        {"", "1", -1},
        {"", "0.0", -1},
        {"a.b", "0.0", 0},
        {"2x", "2", 0},
        {"-1", "0", -1},
        {"+1", "1", 0},
        {"1.", "1", 1},
        {"99999999999", "2147483647", 0},
        {"-99999999999", "-2147483648", 0},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(utils::compareVersion(row.a, row.b), row.result) << row.a << " to " << row.b;
        EXPECT_EQ(utils::compareVersion(row.b, row.a), -row.result) << row.b << " to " << row.a;
    }
}

TEST(TextTest, SplitsAtDelimiters) {
    struct Row {
        const char* text;
        const char* delimiter;
        std::vector<std::string> parts;
    };
    const Row rows[] = {
        {"a.b.", ".", {"a", "b", ""}},
        {"", ".", {""}},
        {"abc", ".", {"abc"}},
        {"..", ".", {"", "", ""}},
        // The first search takes any one character of the delimiter.
        {"a-b", "->", {"a", ""}},
        {"a->b->c", "->", {"a", "b", "c"}},
        {"a-", "->", {"a", ""}},
    };
    for (const Row& row : rows) {
        std::vector<std::string> parts{"old"};
        utils::splitString(row.text, row.delimiter, parts);
        EXPECT_EQ(parts, row.parts) << row.text;
    }
}

TEST(FileTest, Md5AndSize) {
    FakeHost host;
    host.has("empty", "");
    host.has("abc", "abc");
    host.has("long", std::string(4097, 'x'));
    EXPECT_EQ(utils::getFileMd5(host.clientPath("empty").c_str()),
              "D41D8CD98F00B204E9800998ECF8427E");
    EXPECT_EQ(utils::getFileMd5(host.clientPath("abc").c_str()),
              "900150983CD24FB0D6963F7D28E17F72");
    EXPECT_EQ(utils::getFileMd5(host.clientPath("absent").c_str()), "");
    EXPECT_EQ(utils::getFileMd5(nullptr), "");
    EXPECT_EQ(utils::getFileSize(host.clientPath("long").c_str()), 4097);
    EXPECT_EQ(utils::getFileSize(host.clientPath("absent").c_str()), 0);
    std::filesystem::resize_file(host.diskPath("long"), (1ULL << 31) + 5);
    EXPECT_EQ(utils::getFileSize(host.clientPath("long").c_str()), -2147483643)
        << "widened from 32 bits with its sign";
}

TEST(FileVersionTest, TakesTheResourceElseTheStore) {
    FakeHost host;
    host.has("bin\\a.dll", materials::buildPeFile({.version = {1, 2, 3, 4}}));
    host.has("data\\a.dat", "no resource");
    host.versions.entries = {{"data\\a.dat", "5.6"}, {"bin\\a.dll", "9"}};
    struct Row {
        std::string path;
        const char* version;
        bool isFileVersion;
    };
    const Row rows[] = {
        {"bin/a.dll", "1.2.3.4", true}, {host.clientPath("bin\\a.dll"), "1.2.3.4", true},
        {"data/a.dat", "5.6", false},   {host.clientPath("data\\a.dat"), "5.6", false},
        {"absent", "", false},
    };
    for (const Row& row : rows) {
        bool isFileVersion = !row.isFileVersion;
        EXPECT_EQ(utils::getFileVersion(row.path.c_str(), &isFileVersion), row.version) << row.path;
        EXPECT_EQ(isFileVersion, row.isFileVersion) << row.path;
    }
    bool untouched = true;
    EXPECT_EQ(utils::getFileVersion(nullptr, &untouched), "");
    EXPECT_TRUE(untouched);
    EXPECT_TRUE(utils::setDataFileVersion("data\\a.dat", "5.7"));
    host.without(L"xnbase.dll");
    EXPECT_EQ(utils::getFileVersion("data\\a.dat", &untouched), "");
    EXPECT_FALSE(untouched);
    EXPECT_FALSE(utils::setDataFileVersion("data\\a.dat", "5.8"));
    fake::setExecutable(""); // as a path that is too long is told
    untouched = true;
    EXPECT_EQ(utils::getFileVersion("bin\\a.dll", &untouched), "");
    EXPECT_FALSE(untouched);
}

TEST(ClientTest, ChannelTypeByMarkerModuleThenBySecurityModule) {
    FakeHost host;
    host.channelType = std::string(64, 'c');
    EXPECT_EQ(utils::getChannelType(), host.channelType);
    EXPECT_EQ(fake::references(L"OrvSecurityver.dll"), 0) << "what was loaded is freed";
    fake::addModule(L"cpd\\tarnlyoem.dll", {}, fake::Presence::loadable);
    EXPECT_EQ(utils::getChannelType(), "tulsar_tarnly_1.0");
    EXPECT_TRUE(host.logged("there is tarnlyoem.dll, this ver is tarnly."));
    EXPECT_EQ(fake::references(L"cpd\\tarnlyoem.dll"), 0);
    host.without(L"cpd\\tarnlyoem.dll");
    fake::addModule(L"OrvSecurityver.dll", {}, fake::Presence::loadable);
    EXPECT_EQ(utils::getChannelType(), "");
    EXPECT_EQ(host.lineWith("get channeltype process failed. err:").level, 4);
    EXPECT_EQ(fake::references(L"OrvSecurityver.dll"), 1) << "left loaded on this path";
    host.without(L"OrvSecurityver.dll");
    EXPECT_EQ(utils::getChannelType(), "");
    EXPECT_EQ(host.lineWith("load OrvSecurityver.dll failed. err:").level, 4);
}

TEST(ClientTest, AModuleThatWasThereIsNotFreed) {
    FakeHost host;
    fake::load(L"OrvSecurityver.dll");
    utils::getChannelType();
    EXPECT_EQ(fake::references(L"OrvSecurityver.dll"), 1);
}

/// Calls of the module's export, of which the first waits for a second one to come in.
struct ChannelCalls {
    static int answer(char* /*buffer*/, int* /*length*/) {
        if (++calls == 1) {
            second = std::thread([] { utils::getChannelType(); });
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            seenByFirst = calls.load();
        }
        return 0;
    }
    static inline std::atomic<int> calls{0};
    static inline std::atomic<int> seenByFirst{0};
    static inline std::thread second;
};

TEST(ClientTest, NobodyUsesAModuleThatAnotherThreadIsToFree) {
    FakeHost host;
    fake::addModule(L"OrvSecurityver.dll",
                    {{"GetChannelType", reinterpret_cast<void*>(&ChannelCalls::answer)}},
                    fake::Presence::loadable);
    ChannelCalls::calls = 0;
    utils::getChannelType();
    ChannelCalls::second.join();
    EXPECT_EQ(ChannelCalls::seenByFirst.load(), 1);
    EXPECT_EQ(ChannelCalls::calls.load(), 2);
    EXPECT_EQ(fake::references(L"OrvSecurityver.dll"), 0);
}

TEST(ClientTest, OperatingSystemVersion) {
    FakeHost host;
    EXPECT_EQ(utils::getOSVersion(false), "10.0.19045");
    EXPECT_EQ(utils::getOSVersion(true), "10.0.19045.0");
    host.osVersion.size = 0;
    EXPECT_EQ(utils::getOSVersion(true), "");
    host.withoutId(L"module.base");
    EXPECT_EQ(utils::getOSVersion(false), "");
}

TEST(ClientTest, TheTrayIsRestartedOnlyWithAllWindowsClosed) {
    const std::pair<const wchar_t*, const char*> rows[] = {
        {L"TULSAR.INSTANCE", "safe is exist."},
        {L"XNSETTINGUI.INSTANCE", "settingui is exist."},
        {L"XNOPERATECENTER.INSTANCE", "operatecenter is exist."},
        {L"XNREPAIR.INSTANCE", "repair is exist."},
    };
    for (const auto& [instance, words] : rows) {
        FakeHost host;
        host.openWindows = {instance};
        EXPECT_FALSE(utils::canRestartTray());
        ASSERT_EQ(host.log().size(), 1U);
        EXPECT_EQ(host.log()[0].text,
                  std::string("update plugin, can restart tray, ") + words + " ");
    }
    FakeHost host;
    EXPECT_TRUE(utils::canRestartTray());
    EXPECT_TRUE(host.log().empty());
    host.withoutId(L"module.xnguardbase");
    EXPECT_TRUE(utils::canRestartTray());
    EXPECT_EQ(host.lineWith("xnguardbase nil.").level, 4);
}

TEST(ClientTest, LoginNamesTheFirstStateThatFails) {
    FakeHost host;
    EXPECT_TRUE(utils::isLogined());
    host.user.servicePart.valid = false;
    EXPECT_FALSE(utils::isLogined());
    host.user.devicePart.present = false;
    EXPECT_FALSE(utils::isLogined());
    host.user.tokenPart.valid = false;
    EXPECT_FALSE(utils::isLogined());
    host.without(L"xnuser.dll");
    EXPECT_FALSE(utils::isLogined());
    std::vector<std::string> texts;
    for (const FakeHost::LogLine& line : host.log()) {
        texts.push_back(line.text.substr(std::string("update plugin, isLogined, ").size()));
    }
    EXPECT_EQ(texts, (std::vector<std::string>{"logined. ", "srv closed. ", "device invalid. ",
                                               "token invalid. ", "token invalid. "}));
}

TEST(ClientTest, TheTestFileOverridesWhatItNames) {
    struct Row {
        const char* text;
        const char* channelId;
        int updateTime;
        bool testParam;
    };
    const Row rows[] = {
        {"[Kelvar]\n", "", 60, false},
        {"[kelvar]\r\nCHANNEL_ID = c1 \r\nupdate_time=3\r\ntest_param=-1\r\n", "c1", 3, true},
        {"[Other]\nchannel_id=x\ntest_param=1\n", "", 60, false},
    };
    FakeHost host;
    std::string channelId = "old";
    int updateTime = -1;
    bool testParam = true;
    EXPECT_FALSE(utils::readTestConfig(channelId, updateTime, testParam));
    EXPECT_EQ(channelId, "old");
    for (const Row& row : rows) {
        host.has("test_update_kelvar.ini", row.text);
        EXPECT_TRUE(utils::readTestConfig(channelId, updateTime, testParam));
        EXPECT_EQ(channelId, row.channelId) << row.text;
        EXPECT_EQ(updateTime, row.updateTime) << row.text;
        EXPECT_EQ(testParam, row.testParam) << row.text;
    }
}

} // namespace
