#include <gtest/gtest.h>

#include "host/settings.h"
#include "sandbox/platform/heldfile.h"
#include "support/material.h"
#include "updatekelvar/task/xtaskkelvarmove.h"

namespace {

/// A run that schedules or places targets over a stored padding list.
class PaddingTest : public testing::Test {
protected:
    void stored(const std::string& json) { host.settings.put(key, json); }
    std::string stored() { return host.settings.text(key); }

    XMaterialMetaData& offer(const std::string& path, const std::string& content) {
        const auto bytes = material::bytes(content);
        list.materials.push_back(material::plain(path, "2", bytes));
        host.has("update\\" + list.materials.back().md5, bytes);
        return list.materials.back();
    }
    void run() { XTaskKelvarMove().check(&list, nullptr); }

    const std::string key = settingkeys::kelvarPaddingFileList;
    FakeHost host;
    XBatchGetMaterialMetaData list;
};

TEST_F(PaddingTest, NothingMovedTouchesNothing) {
    stored(R"({"a":"gone"})");
    list.materials.push_back(material::plain("x", "1", material::bytes("not there")));
    run();
    EXPECT_EQ(stored(), R"({"a":"gone"})");
    EXPECT_TRUE(host.logged("update padding, padding count: 0 , succ count: 0 "));
    EXPECT_FALSE(host.logged("load padding"));
}

TEST_F(PaddingTest, EntriesWhoseFileIsGoneEndAndOthersGoOnWaiting) {
    for (const char* file : {"update\\x", "update\\y", "update\\z"}) {
        host.has(file, "waits");
    }
    stored(R"({"a":"x","b":"gone","c":"z","d":"y"})");
    offer("c", "placed");
    run();
    EXPECT_TRUE(host.logged("invalid padding, remove: b "));
    EXPECT_EQ(stored(), R"({"a":"x","d":"y"})");
    EXPECT_TRUE(host.exists("update\\x"));
    EXPECT_FALSE(host.exists("update\\z")) << "overtaken";
}

TEST_F(PaddingTest, AnOvertakenEntryLosesItsFileUnlessThatIsInUse) {
    host.has("update\\x", "waits");
    stored(R"({"a":"x"})");
    offer("a", "placed");
    {
        const sandbox::HeldFile inUse(host.diskPath("update\\x"));
        run();
    }
    EXPECT_TRUE(
        host.logged("move succ, delete: " + host.clientPath("update\\x") + " , lasterror: 32 "));
    EXPECT_EQ(stored(), R"({"a":"x"})");
    EXPECT_TRUE(host.exists("update\\x"));

    list.materials.clear();
    host.versions.entries["a"] = "1";
    offer("a", "placed again");
    run();
    EXPECT_FALSE(host.exists("update\\x"));
    EXPECT_TRUE(host.logged("invalid padding, remove: a "));
    EXPECT_EQ(stored(), R"({"a":"x"})") << "an empty list is not written";
    EXPECT_TRUE(host.logged("save padding, count: 0 "));
}

TEST_F(PaddingTest, AnEntryOfATargetThatIsScheduledAgainGivesWay) {
    host.has("update\\x", "waits");
    host.has("a", "old");
    stored(R"({"a":"x"})");
    const std::string md5 = offer("a", "newer").md5;
    const sandbox::HeldFile inUse(host.diskPath("a"));
    run();
    // Its target is also in the list of what went through, so its file goes there already.
    EXPECT_TRUE(host.logged("move succ, delete: " + host.clientPath("update\\x")));
    EXPECT_EQ(stored(), R"({"a":")" + md5 + "\"}");
    EXPECT_FALSE(host.exists("update\\x"));
    EXPECT_TRUE(host.exists("update\\" + md5));
}

TEST_F(PaddingTest, TheSameFileScheduledTwiceTakesItselfAway) {
    host.has("a", "old");
    const XMaterialMetaData row = offer("a", "newer");
    const sandbox::HeldFile inUse(host.diskPath("a"));
    run();
    EXPECT_EQ(stored(), R"({"a":")" + row.md5 + "\"}");
    EXPECT_TRUE(host.exists("update\\" + row.md5));
    list.materials[0].version = "3";
    run();
    EXPECT_EQ(stored(), R"({"a":")" + row.md5 + "\"}");
    EXPECT_FALSE(host.exists("update\\" + row.md5)) << "the entry ends as invalid later";
}

TEST_F(PaddingTest, TargetsScheduledInAFailedGroupMeetOlderEntries) {
    host.has("update\\x", "waits");
    host.has("a", "old");
    stored(R"({"a":"x","b":"x"})");
    const std::string md5 = offer("a", "newer").md5;
    offer("z", "missing").dependent = "g";
    list.materials[0].dependent = "g";
    std::filesystem::remove(host.diskPath("update\\" + list.materials[1].md5));
    const sandbox::HeldFile inUse(host.diskPath("a"));
    run();
    EXPECT_TRUE(host.logged("dupl padding, delete: " + host.clientPath("update\\x")));
    EXPECT_FALSE(host.exists("update\\x"));
    EXPECT_EQ(stored(), R"({"a":")" + md5 + R"(","b":"x"})");
}

TEST_F(PaddingTest, AStoredNameThatLeadsOutLosesItsEntryAndNoFile) {
    host.has("precious.txt", "kept");
    host.has("update\\x", "waits");
    stored(R"({"a":"..\\precious.txt","b":"","c":"\\x","d":"..\\precious.txt"})");
    offer("a", "placed");
    run();
    EXPECT_TRUE(host.exists("precious.txt"));
    EXPECT_EQ(host.count("update padding, bad name, remove:"), 3U);
    EXPECT_EQ(stored(), R"({"c":"\\x"})");
}

TEST_F(PaddingTest, AStoredTextThatIsNoJsonLeavesTheTask) {
    stored("{");
    offer("a", "placed");
    EXPECT_ANY_THROW(run());
}

} // namespace
