#include <gtest/gtest.h>

#include "host/settings.h"
#include "platform/clock.h"
#include "sandbox/platform/heldfile.h"
#include "support/fakehost.h"
#include "support/immortal.h"
#include "updatefile/xupdatefile.h"

namespace {

constexpr const char* succeeded = "update plugin, file, check finished, succ: 1 ";
constexpr const char* failed = "update plugin, file, check finished, succ: 0 ";
constexpr const char* ignored = "update plugin, file, check finished, so ignore.";

/// A channel whose server offers "one", with its MD5, and "two", without.
class FileChannel : public testing::Test {
protected:
    FileChannel() : channel(started()) {
        host.answers["check"] = {
            0, 200,
            R"({"data":{"list":[{"fileType":1000,"fileURL":"u/0","fileVersion":"5",)"
            R"("fileMD5":"F97C5D29941bfb1b2fdab0874906ab82"},)"
            R"({"fileType":1001,"fileURL":"u/1"}]}})"};
        host.onTransfer = [this](const std::string& url) {
            return storage[url];
        };
    }
    /// A channel as a new process has it.
    static XUpdateFile& started() {
        auto& made = immortal<XUpdateFile>();
        EXPECT_EQ(made.init(), 0);
        return made;
    }
    bool succeeds() {
        const std::size_t before = host.count(succeeded);
        started().checkUpdate();
        return host.count(succeeded) > before;
    }
    void userEvent() { host.user.observers.at(0)->event2(nullptr); }
    void withoutRetries() { host.without(L"xnbase.dll", "postTask"); }

    FakeHost host;
    std::map<std::string, FakeHost::Transfer> storage{{"u/0", {0, "one"}}, {"u/1", {0, "two"}}};
    XUpdateFile& channel;
};

TEST_F(FileChannel, OneSuccessEndsTheChannelAndIsRemembered) {
    host.muteMode = 1; // the manager's rule alone
    userEvent();
    channel.checkUpdate();
    EXPECT_EQ(host.count(succeeded), 1U);
    EXPECT_EQ(host.count(ignored), 1U);
    EXPECT_EQ(host.bytesOf("patchlib0.dat"), "one");
    EXPECT_TRUE(host.numberOptions.empty()) << "the peer is verified";
    EXPECT_TRUE(succeeds());
    EXPECT_EQ(host.transfers, (std::vector<std::string>{"u/0", "u/1", "u/1"}));
    const FakeHost::Request& second = host.requests.at(1);
    EXPECT_EQ(second.url, "http://upgrade.test/upgrade/v1/file/check");
    EXPECT_EQ(second.headers.front(), std::pair(std::string("BrevToken"), std::string("token-1")));
    EXPECT_EQ(second.body, R"({"bundleId":"com.orvane.tulsar","info":[)"
                           R"({"fileType":1000,"fileVersion":"5"},)"
                           R"({"fileType":1001,"fileVersion":"0.0.0.0"}],"osName":"windows",)"
                           R"("osVersion":"10.0.19045.0","phone":"13800000000"})");
    EXPECT_TRUE(host.logged("13800000000")) << "the body is logged";
    EXPECT_FALSE(host.logged("token-1")) << "the token is not";
}

TEST_F(FileChannel, PlacesWhatComesFromTheServersAddressOrTheStoredOne) {
    host.settings.put(settingkeys::fileList, R"({"list":[{"fileType":1001,"fileURL":"u/kept"}]})");
    host.answers["check"].body =
        R"({"data":{"list":[{"fileType":1000,"fileURL":"u/0","fileMD5":"00"}]}})";
    storage["u/0"].body = "an error page";
    storage["u/kept"].body = "from elsewhere";
    EXPECT_TRUE(succeeds());
    EXPECT_EQ(host.bytesOf("patchlib0.dat"), "an error page") << "no test behind the transfer";
    EXPECT_EQ(host.bytesOf("patchlib1.dat"), "from elsewhere") << "the server named no other";
    storage["u/0"].body = "right";
    EXPECT_TRUE(succeeds());
    EXPECT_EQ(host.bytesOf("patchlib0.dat"), "right") << "the next run looks at the MD5";
}

TEST_F(FileChannel, ADamagedStoredListCountsAsEmpty) {
    host.settings.put(settingkeys::fileList, R"({"list":)");
    EXPECT_TRUE(succeeds());
    EXPECT_EQ(host.lineWith("stored text is no json, key: KEY_PLUGIN_UPDATE_FILE_LIST ").level, 4);
    EXPECT_TRUE(succeeds());
    EXPECT_NE(host.requests.at(1).body.find(R"("fileVersion":"5")"), std::string::npos);
}

TEST_F(FileChannel, OnlyAFailedMoveOrAMissingServiceFailsADownload) {
    withoutRetries();
    host.hasHandles = false;
    EXPECT_TRUE(succeeds()) << "no transfer began";
    host.hasHandles = true;
    std::filesystem::remove(host.diskPath("update\\_1000"));
    std::filesystem::create_directories(host.diskPath("update\\_1000"));
    EXPECT_TRUE(succeeds()) << "no file to write to";
    EXPECT_EQ(host.bytesOf("patchlib1.dat"), "two");
    std::filesystem::remove_all(host.diskPath("update\\_1000"));
    host.has("patchlib0.dat", "old");
    storage["u/0"].code = 18;
    EXPECT_TRUE(succeeds());
    EXPECT_EQ(host.bytesOf("update\\_1000"), "one") << "what came stays";
    storage["u/0"].code = 0;
    {
        const sandbox::HeldFile inUse(host.diskPath("patchlib0.dat"));
        EXPECT_FALSE(succeeds());
    }
    EXPECT_EQ(host.bytesOf("patchlib0.dat"), "old");
    EXPECT_EQ(host.bytesOf("patchlib1.dat"), "two") << "the others are placed all the same";
    fake::setExecutable("");
    EXPECT_FALSE(succeeds());
    fake::setExecutable(host.clientPath("trayhost.exe"));
    host.withoutId(L"module.libcurl");
    EXPECT_FALSE(succeeds());
}

TEST_F(FileChannel, EveryUselessAnswerIsAFailure) {
    withoutRetries();
    const FakeHost::Answer answers[] = {{7, 200, ""},
                                        {0, 500, ""},
                                        {0, 200, ""},
                                        {0, 200, R"({"data":{"list":[{"fileType":1}]}})"}};
    for (const FakeHost::Answer& answer : answers) {
        host.answers["check"] = answer;
        EXPECT_FALSE(succeeds()) << answer.body;
    }
    EXPECT_EQ(host.count("task check, response, error :  7 , code =  200 "), 1U);
    EXPECT_EQ(host.count("task check, response list null . "), 4U);
    EXPECT_FALSE(host.settings.hasText(settingkeys::fileList));
    host.answers["check"] = {0, 200, R"({"data":{"list":[{"fileType":1000}]}})"};
    storage[""] = {3, ""};
    EXPECT_TRUE(succeeds()) << "an entry without an address counts, though it brings nothing";
    EXPECT_EQ(host.transfers, (std::vector<std::string>{"", ""}));
}

TEST_F(FileChannel, WithoutTheHostsTasksTheNextUserEventIsTheNextAttempt) {
    withoutRetries();
    host.answers["check"] = {};
    for (int i = 0; i < 4; ++i) {
        userEvent();
    }
    EXPECT_EQ(host.count(failed), 3U);
    EXPECT_EQ(host.count(ignored), 1U);
}

TEST_F(FileChannel, ThreeAttemptsFiveMinutesApart) {
    host.user.servicePart.valid = false;
    userEvent(); // refused, which is no attempt
    host.user.servicePart.valid = true;
    host.answers["check"] = {};
    host.onThread = true;
    fake::setWaits(fake::Waits::immediate);
    const std::uint32_t start = platform::tickCount();
    userEvent();
    host.awaitLog(failed, 3);
    host.awaitDeliveries();
    EXPECT_EQ(platform::tickCount() - start, 600'000U);
    userEvent();
    EXPECT_EQ(host.count(ignored), 1U);
}

TEST_F(FileChannel, AsksWithTheTextsOfTheUserCentre) {
    withoutRetries();
    host.user.tokenPart.tokenText = nullptr;
    EXPECT_FALSE(succeeds());
    EXPECT_TRUE(host.requests.empty());
    host.user.tokenPart.tokenText = "";
    host.user.tokenPart.phoneText = "\xff";
    EXPECT_TRUE(succeeds());
    EXPECT_TRUE(host.requests.back().body.ends_with("\"\xEF\xBF\xBD\"}"));
    EXPECT_EQ(host.requests.back().headers.size(), 1U) << "no token";
    host.user.tokenPart.phoneText = nullptr;
    EXPECT_TRUE(succeeds());
    host.without(L"xnuser.dll");
    EXPECT_FALSE(succeeds());
}

TEST_F(FileChannel, RunsAtOnceSpendOneAttemptEachAndARunWithoutAnAddressEndsTwice) {
    host.onThread = true;
    host.upgradeAddress = nullptr;
    userEvent(); // one attempt, although the response step runs here and on the thread
    host.awaitDeliveries();
    EXPECT_EQ(host.count("file, task check, response, error :"), 2U);
    EXPECT_EQ(host.count("update plugin, file, retry."), 1U);
    host.upgradeAddress = "http://upgrade.test";
    host.answers["check"] = {};
    userEvent();
    userEvent();
    host.awaitDeliveries();
    EXPECT_EQ(host.count(failed), 4U);
    EXPECT_EQ(host.count("update plugin, file, retry."), 2U);
    userEvent();
    EXPECT_EQ(host.count(ignored), 1U);
}

TEST_F(FileChannel, ASuccessIsFinalForARunThatOverlapsIt) {
    std::unique_ptr<sandbox::HeldFile> inUse;
    host.onTransfer = [&](const std::string& url) {
        if (host.requests.size() == 1) {
            host.has("patchlib0.dat", "one"); // the run inside leaves the open transfer alone
            channel.checkUpdate();
            inUse = std::make_unique<sandbox::HeldFile>(host.diskPath("patchlib0.dat"));
        }
        return storage[url];
    };
    channel.checkUpdate();
    EXPECT_EQ(host.count(failed), 1U);
    inUse.reset();
    userEvent();
    EXPECT_EQ(host.count(succeeded), 1U) << "a failure behind it does not open the channel again";
    EXPECT_EQ(host.count(ignored), 1U);
}

} // namespace
