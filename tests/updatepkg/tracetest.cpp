#include <nlohmann/json.hpp>
#include <thread>

#include "updatepkg/pkgtest.h"
#include "updatepkg/task/downloadprogress.h"

namespace {

using nlohmann::json;

const std::string fresh = UpgradeData().toStored();

TEST(UpgradeDataTest, TakesMembersOfTheRightType) {
    const std::pair<const char*, const char*> rows[] = {
        {R"([])", R"({})"},
        {R"({"data":null})", R"({"status":1})"},
        {R"({"data":{"info":{"version":"2"}}})", R"({"status":1})"},
        {R"({"data":{"needUpgrade":1,"info":{"version":"2"}}})", R"({"status":1,"version":"2"})"},
        {R"({"data":{"needUpgrade":true,"info":{"isForce":1,"version":2,"packageMD5":null,
         "packageURL":true,"content":[],"fileSize":"9","status":4}}})",
         R"({"status":1,"needUpgrade":true})"},
        {R"({"data":{"needUpgrade":true,"info":{"isForce":true,"version":"2","packageMD5":"m",
         "packageURL":"u","content":"c","fileSize":9.9}}})",
         R"({"status":1,"needUpgrade":true,"isForce":true,"version":"2","packageMD5":"m",
         "packageURL":"u","content":"c","fileSize":9})"},
    };
    for (const auto& [answer, members] : rows) {
        UpgradeData data;
        data.fromResponse(answer);
        json expected = json::parse(fresh);
        expected.update(json::parse(members));
        EXPECT_EQ(data.toStored(), expected.dump());
    }
    const char* all = R"({"content":"c","fileSize":9,"isForce":true,"isUIUpgradeFinished":true,)"
                      R"("needUpgrade":true,"packageMD5":"m","packageURL":"u","status":4,)"
                      R"("version":"v"})";
    UpgradeData data;
    for (const char* text : {all, "", R"({"needUpgrade":0,"status":"","isUIUpgradeFinished":1})"}) {
        data.fromStored(text);
        EXPECT_EQ(data.toStored(), all);
    }
    data.readInfo(nullptr);
    EXPECT_EQ(data.toStored(), all);
    data.readInfo({{"version", "w"}, {"status", 1}});
    EXPECT_EQ(data.getVersion(), "w");
    EXPECT_EQ(data.getStatus(), 4) << "no member of an offer";
    EXPECT_THROW(data.fromResponse(""), json::exception);
    EXPECT_THROW(data.fromStored("/**/{}"), json::exception);
}

using TraceTest = PkgTest;

/// The trace of a process that has just started.
struct NewTrace final : XUpdatePkgTrace {};

TEST_F(TraceTest, StartsWithWhatTheStoreHolds) {
    const std::tuple<const char*, const char*, const char*, bool> rows[] = {
        {"", "", "", false},
        {R"({"version":"9"})", R"({"versions":["7",8,"8"]})", "9", true},
        {R"({"version":"9"})", R"({"versions":"8"})", "9", false},
        {"damaged", R"({"versions":["8"]})", "", true},
        {R"({"version":"9"})", "{", "9", false},
    };
    host.notifications.observers.clear();
    for (const auto& [upgrade, ignored, version, ignores8] : rows) {
        host.settings.put(settingkeys::upgrade, upgrade);
        host.settings.put(settingkeys::ignoreVersionList, ignored);
        const NewTrace started;
        EXPECT_EQ(started.getData()->getVersion(), version);
        EXPECT_EQ(started.isIgnoredVersion("8"), ignores8);
        EXPECT_EQ(stored(), upgrade) << "what cannot be read is left as it is";
    }
    EXPECT_EQ(host.count("stored text is no json, key: KEY_UPDATE_"), 2U);
    EXPECT_EQ(host.notifications.observers.size(), std::size(rows));
    host.without(L"XNSetting.dll");
    EXPECT_EQ(NewTrace().getData()->toStored(), fresh);
}

TEST_F(TraceTest, AnIgnoredVersionCountsUntilTheNextStart) {
    for (const char* version : {"", "8", "8"}) {
        holds(json{{"version", version}}.dump());
        command(4);
    }
    const std::string list = host.settings.text(settingkeys::ignoreVersionList);
    EXPECT_EQ(list.substr(list.size() - 8), R"("8","8"])"); // others may stand before
    EXPECT_TRUE(trace.isIgnoredVersion("8") && !trace.isIgnoredVersion(""));
    EXPECT_FALSE(NewTrace().isIgnoredVersion("8"));
}

TEST_F(TraceTest, AnOfferThatDoesNotFitEndsTheProcess) {
    const std::string room(1023 - fresh.size(), 'c');
    holds(json{{"content", room}}.dump());
    sender->sendUpgradeInfo();
    EXPECT_EQ(events(), "100 " + stored() + "|");
    holds(json{{"content", room + "c"}}.dump());
    EXPECT_THROW(sender->sendUpgradeInfo(), fake::ProcessEnded);
    EXPECT_TRUE(host.logged("upgrade info too long, length: 1024 "));
}

TEST_F(TraceTest, AProgressEventIsAWholePercentInSinglePrecision) {
    const std::tuple<std::int64_t, std::vector<std::size_t>, const char*> rows[] = {
        {200, {1, 1, 1, 1}, "102 1|102 2|"},
        {3, {1, 1, 1, 1}, "102 33|102 66|102 100|102 133|"}, // not capped
        {16777217, {16777216}, "102 100|"},                  // the total is rounded
        {67108864, {67108863}, "102 100|"},                  // so is the percent
        {1, {~std::size_t{0} / 2, 1}, "102 2147483520|"},
        {0, {3145727, 1}, "102 1|"}, // 300 MiB when nothing is told
    };
    DownloadProgress& progress = DownloadProgress::instance();
    progress.setSender(sender);
    for (const auto& [total, steps, posted] : rows) {
        progress.restart();
        progress.expect(total);
        for (const std::size_t step : steps) {
            progress.received(step);
        }
        EXPECT_EQ(events(), posted) << total;
    }
}

TEST_F(TraceTest, StandsManyThreads) {
    const auto data = holds(R"({"version":"shared"})");
    DownloadProgress::instance().setSender(nullptr);
    std::thread reader([&] {
        for (int i = 0; i < 100; ++i) {
            EXPECT_FALSE(trace.getData()->toStored().empty() || trace.isIgnoredVersion("other"));
            DownloadProgress::instance().received(1);
        }
    });
    for (int i = 0; i < 100; ++i) {
        data->setStatus(i);
        command(4);
        DownloadProgress::instance().setSender(nullptr);
        trace.setData(data);
    }
    reader.join();
}

} // namespace
