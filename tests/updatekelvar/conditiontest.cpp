#include <gtest/gtest.h>

#include "host/settings.h"
#include "support/fakehost.h"
#include "updatekelvar/task/xtaskkelvarcondition.h"

namespace {

/// Counts how often it is entered.
class Entered final : public XTaskBase {
public:
    using XTaskBase::check;
    void check(FinishCallback /*finish*/) override { ++times; }
    int times = 0;
};

/// Ends the first wait that an earlier test of this process may have left pending.
struct NothingPending {
    NothingPending() {
        FakeHost earlier;
        XTaskKelvarCondition::loadLastCheckTime();
        fake::advance(1000);
        XTaskKelvarCondition().check([](bool) {});
    }
};

class ConditionTest : public testing::Test {
protected:
    /// Stores a time and starts the channel; a first start has none.
    void startWithStoredTime(std::uint64_t tick) {
        if (tick != 0) {
            host.settings.put(settingkeys::kelvarLastCheckTime, tick);
        }
        XTaskKelvarCondition::loadLastCheckTime();
    }
    bool passesAt(std::uint32_t tick) {
        fake::setTick(tick);
        const auto next = std::make_shared<Entered>();
        XTaskKelvarCondition task;
        task.setNext(next);
        bool refused = false;
        task.check([&](bool succ) { refused = !succ; });
        EXPECT_NE(refused, next->times == 1);
        return next->times == 1;
    }
    std::uint64_t storedTime() { return host.settings.number(settingkeys::kelvarLastCheckTime); }

    NothingPending nothingPending;
    FakeHost host;
};

TEST_F(ConditionTest, AFirstStartPassesAbove300ThenTheGateIs1800) {
    fake::setTick(5000);
    startWithStoredTime(0);
    EXPECT_EQ(storedTime(), 5000U);
    EXPECT_FALSE(passesAt(5300));
    EXPECT_EQ(storedTime(), 5000U);
    EXPECT_TRUE(passesAt(5301));
    EXPECT_EQ(storedTime(), 5301U);
    EXPECT_FALSE(passesAt(5301 + 1800));
    EXPECT_TRUE(host.logged("task condition, check times fail, so ignore."));
    EXPECT_TRUE(passesAt(5301 + 1801));
}

TEST_F(ConditionTest, AStoredTimeOfALongerBootKeepsTheGateShut) {
    startWithStoredTime(~std::uint64_t{0} / 2 + 1); // what a damaged store may hold
    passesAt(10);
    startWithStoredTime(1'000'000);
    EXPECT_FALSE(passesAt(10));
    EXPECT_FALSE(passesAt(1'001'800));
    EXPECT_TRUE(passesAt(1'001'801));
}

TEST_F(ConditionTest, ATickCountThatWrapsKeepsTheGateShut) {
    startWithStoredTime(0xFFFFFF00U);
    EXPECT_FALSE(passesAt(0xFFFFFFFFU));
    EXPECT_FALSE(passesAt(2000)); // elapsed is negative: the count has begun anew
}

TEST_F(ConditionTest, TheTestFileSetsTheWait) {
    startWithStoredTime(1000);
    const std::tuple<const char*, std::uint32_t> rows[] = {
        {"3", 10}, {"10", 10}, {"11", 11}, {"-5", 10}, {"5000", 5000}};
    std::uint32_t last = 1000;
    for (const auto& [text, wait] : rows) {
        host.has("test_update_kelvar.ini", std::string("[Kelvar]\nupdate_time=") + text + "\n");
        EXPECT_FALSE(passesAt(last + wait)) << text;
        EXPECT_TRUE(passesAt(last + wait + 1)) << text;
        last += wait + 1;
    }
}

TEST_F(ConditionTest, ThePassOfTheTestFileLeavesTheFirstWaitPending) {
    fake::setTick(1000);
    startWithStoredTime(0);
    host.has("test_update_kelvar.ini", "[Kelvar]\nupdate_time=100\n");
    EXPECT_TRUE(passesAt(1101));
    std::filesystem::remove(host.diskPath("test_update_kelvar.ini"));
    EXPECT_TRUE(passesAt(1101 + 301));
    EXPECT_FALSE(passesAt(1101 + 301 + 301));
}

TEST_F(ConditionTest, WithoutASettingsStoreEachStartIsAFirstOne) {
    host.without(L"XNSetting.dll");
    fake::setTick(1000);
    startWithStoredTime(0);
    EXPECT_TRUE(passesAt(1301));
}

TEST_F(ConditionTest, SweepsExactlyTheListedFiles) {
    startWithStoredTime(1);
    host.settings.put(settingkeys::kelvarTempFileList,
                      R"(["abc","folder","CASE","gone","..\\a.dll"])");
    host.has("update\\a.dll", "waits");
    for (const char* name : {"abc", "abc_0", "case", "other"}) {
        host.has(std::string("update\\temp\\") + name, "old");
    }
    std::filesystem::create_directories(host.diskPath("update\\temp\\folder"));
    EXPECT_TRUE(passesAt(5000));
    EXPECT_FALSE(host.exists("update\\temp\\abc"));
    EXPECT_TRUE(host.exists("update\\a.dll"));
    for (const char* name : {"abc_0", "case", "other", "folder"}) {
        EXPECT_TRUE(host.exists(std::string("update\\temp\\") + name)) << name;
    }
    EXPECT_EQ(host.settings.text(settingkeys::kelvarTempFileList), "");
}

TEST_F(ConditionTest, TheSweepNeedsAListAndAFolder) {
    startWithStoredTime(1);
    host.has("update\\temp\\abc", "old");
    const int writes = host.settings.writes;
    EXPECT_TRUE(passesAt(5000));
    EXPECT_EQ(host.settings.writes, writes + 1) << "the time, and no list";
    std::filesystem::remove_all(host.diskPath("update"));
    host.settings.put(settingkeys::kelvarTempFileList, R"(["abc"])");
    EXPECT_TRUE(passesAt(10000));
    EXPECT_EQ(host.settings.text(settingkeys::kelvarTempFileList), "") << "used up all the same";
}

TEST_F(ConditionTest, WithoutAnApplicationFolderTheCurrentOneIsNotSwept) {
    startWithStoredTime(1);
    host.has("update\\temp\\abc", "old");
    host.settings.put(settingkeys::kelvarTempFileList, R"(["abc"])");
    fake::setExecutable(""); // as a path that is too long is told
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(host.folder);
    EXPECT_TRUE(passesAt(5000));
    std::filesystem::current_path(before);
    EXPECT_TRUE(host.exists("update\\temp\\abc"));
}

} // namespace
