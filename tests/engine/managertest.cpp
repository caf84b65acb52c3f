#include <gtest/gtest.h>

#include <vector>

#include "support/fakehost.h"
#include "xrefresher.h"
#include "xupdatemgr.h"

namespace {

constexpr const char* muteLine = "XUpdateMgr doItem isMugeMode return ";

/// Writes its name into a record when it is set up or driven.
class Channel final : public XUpdate {
public:
    Channel(std::string tag, std::vector<std::string>& calls, int result = 0)
        : name(std::move(tag)), record(calls), initResult(result) {}
    int init() override {
        record.push_back(name + " init");
        return initResult;
    }
    int checkUpdate() override {
        record.push_back(name);
        return 0;
    }

private:
    std::string name;
    std::vector<std::string>& record;
    int initResult;
};

class ManagerTest : public testing::Test {
protected:
    bool add(const std::string& name, bool start, int initResult = 0) {
        return manager.addItem(std::make_shared<Channel>(name, calls, initResult), start);
    }

    FakeHost host;
    XUpdateMgr manager;
    std::vector<std::string> calls;
};

TEST_F(ManagerTest, DrivesEachListInItsOrder) {
    EXPECT_FALSE(add("a", false, 1)); // driven all the same
    EXPECT_TRUE(add("b", true));
    EXPECT_TRUE(add("c", false));
    EXPECT_FALSE(manager.addItem(nullptr, false));
    manager.startUpdate();
    manager.tickUpdate();
    manager.tickUpdate();
    EXPECT_EQ(calls,
              (std::vector<std::string>{"a init", "b init", "c init", "b", "a", "c", "a", "c"}));
}

TEST_F(ManagerTest, MuteModeStopsEachDriveWithOneLine) {
    add("a", false);
    add("b", true);
    host.muteMode = 2;
    manager.startUpdate();
    manager.tickUpdate();
    EXPECT_EQ(calls.size(), 2U);
    EXPECT_EQ(host.count(muteLine), 2U);
    EXPECT_EQ(host.lineWith(muteLine).function, "XUpdateMgr::doItem");
    host.muteMode = 0;
    manager.tickUpdate();
    EXPECT_EQ(calls.back(), "a");
}

TEST_F(ManagerTest, WithoutTheQuietModuleNothingIsMuted) {
    add("a", false);
    host.muteMode = 1;
    host.without(L"xnquiet.dll");
    manager.tickUpdate();
    EXPECT_EQ(calls.back(), "a");
}

TEST(PluginTest, StartDrivesTheFileChannelAndATickTheOthers) {
    FakeHost host;
    host.user.tokenPart.valid = false; // so that no chain is left behind
    const auto checks = [&host] {
        std::string channels;
        for (const FakeHost::LogLine& line : host.log()) {
            const std::string start = "update plugin, ";
            if (const auto end = line.text.find(", check update ..."); end != std::string::npos) {
                channels += line.text.substr(start.size(), end - start.size()) + " ";
            }
        }
        return channels;
    };
    static xtray::IXTrayPlugin* plugin = nullptr; // it is never freed
    plugin = CreateUpdatePlugin();
    ASSERT_NE(plugin, nullptr);
    EXPECT_TRUE(plugin->start(nullptr));
    EXPECT_EQ(checks(), "file ");
    plugin->tick();
    EXPECT_EQ(checks(), "file pkg kelvar other statistic ");
    // The gates of a first start are shut.
    host.awaitLog("update plugin, queue, run end.", 2);
}

} // namespace
