#include <gtest/gtest.h>

#include <algorithm>
#include <optional>

#include "support/fakehost.h"
#include "support/immortal.h"
#include "updatekelvar/task/kelvaridentity.h"
#include "updatekelvar/task/xtaskkelvarfetch.h"
#include "xtaskqueue.h"

namespace {

using Received = std::optional<XBatchGetMaterialMetaData>;

/// Stands behind the fetch task; what it is given stays with the test.
struct Receiver final : XTaskBase {
    explicit Receiver(Received& place) : received(place) {}
    using XTaskBase::check;
    void check(const XBatchGetMaterialMetaData* data, FinishCallback finish) override {
        received = *data;
        end(finish, true);
    }

    Received& received;
};

constexpr const char* unknown = R"({"id":-1,"oid":-1})";

class FetchTask : public testing::Test {
protected:
    FetchTask() {
        host.versions.entries["update\\version.dat"] = "1.0.0.1001";
        host.versions.entries["OrvSecurityver.dll"] = "1.5.0.0";
        host.answers["GetUpgradePacket"] = {
            0, 200, R"({"target":{"channel_id":{"product_id":"q","id":"c"},"ver":"9.0"}})"};
        host.answers["GetPacketMeta"] = {0, 200, "{}"};
        host.answers["GetFileStorageAddr"] = {0, 200, R"({"normal_file_addr":"http://files"})"};
        offers({});
    }
    ~FetchTask() override { kelvaridentity::setTestParam(false); }

    /// Materials named by their place, told by their parameters as JSON members, and modules.
    void offers(const std::vector<std::string>& materials, const std::string& modules = "") {
        std::string couples;
        std::string metas;
        for (const std::string& params : materials) {
            const std::string name = std::to_string(std::count(metas.begin(), metas.end(), '\n'));
            metas += metas.empty() ? "" : ",";
            metas.append(R"({"meta":{"md5":")").append(name).append(R"(","extends":{)");
            metas.append(params).append("}}}\n");
            couples += (couples.empty() ? "" : ",") + (R"({"material_id":{"id":")" + name) +
                       R"(","module_id":{"channel_id":{"id":"i","product_id":"p"},"id":"/m"}},)"
                       R"("target_version":"2.0.0.0","is_delete":true})";
        }
        host.answers["GetFullPacketDiff"] = {
            0, 200,
            R"({"full_packet_diff":{"target_version":"9.1","modules":[)" + modules +
                R"(],"materials":[)" + couples + "]}}"};
        host.answers["BatchGetMaterialMeta"] = {0, 200, R"({"metas":[)" + metas + "]}"};
    }
    std::shared_ptr<XTaskKelvarFetch> chain() {
        auto task = std::make_shared<XTaskKelvarFetch>();
        task->setNext(std::make_shared<Receiver>(received));
        return task;
    }
    /// How the chain ended, nothing when it did not.
    std::optional<bool> run() {
        host.requests.clear();
        received.reset();
        std::optional<bool> ended;
        chain()->check([&ended](bool succ) {
            EXPECT_FALSE(ended) << "finished twice";
            ended = succ;
        });
        return ended;
    }
    /// The names of the rows that reach the next task, joined.
    std::string wanted() {
        EXPECT_EQ(run(), true);
        std::string names;
        for (const XMaterialMetaData& row : received.value().materials) {
            names += row.md5;
        }
        return names;
    }
    bool sends(std::size_t request, const std::string& text) const {
        return host.requests.at(request).body.find(text) != std::string::npos;
    }

    FakeHost host;
    Received received;
};

TEST_F(FetchTask, HandsOnWhatTheAnswersSay) {
    host.user.tokenPart.valid = false;
    offers({R"("file_path":"bin/a.dll")", ""},
           R"({"module_id":{"id":"/ORVVIRUSLIB"},"target_version":"7"},)"
           R"({"module_id":{"id":"/orvviruslib"},"target_version":"8"},)"
           R"({"module_id":{"id":"/orvviruslib"},"target_version":"9"})");
    EXPECT_EQ(wanted(), "01");
    EXPECT_EQ(host.requests[0].body,
              R"({"channel_code":"tulsar_upgrade_1.0","channel_unique_code":"","customer":)"
              R"({"asset_id":{"id":-1,"oid":-1},"client":""},"need_min_ver":false,)"
              R"("params":null,"species_unique_code":"","version":"1.0.0.1001"})"
              "\n");
    EXPECT_TRUE(sends(1, R"("target_ver":"9.0")"));
    EXPECT_TRUE(sends(2, R"({"channel_id":{"id":"c","product_id":"q"},"ver":"9.0"})"));
    EXPECT_TRUE(sends(4, R"({"id":"1","module_id":{"channel_id":{"id":"i","product_id":"p"},)"
                         R"("id":"/m"}},"ver":"2.0.0.0"})"));
    EXPECT_EQ(received->version + received->virusLibVersion, "9.18");
    const XMaterialMetaData& last = received->materials.at(1);
    EXPECT_EQ(last.version + last.downloadUrl, "2.0.0.0http://files/");
    EXPECT_EQ(host.count("update plugin, kelvar, task fetch, check ..."), 1U);

    offers({}, R"({"module_id":{"id":"/orvviruslib"},"target_version":"8"})");
    EXPECT_EQ(wanted(), "");
    EXPECT_TRUE(sends(4, "null\n"));
    EXPECT_EQ(received->virusLibVersion, "8");
}

TEST_F(FetchTask, EndsAtAQuestionWithoutAnAnswer) {
    const std::pair<std::string, std::string> rows[] = {
        {"/PacketV2/GetUpgradePacket", "upgradePacketData"},
        {"/PacketV2/GetFullPacketDiff", "fullPacketDiffData"},
        {"/PacketV2/GetPacketMeta", "getPacketMeta"},
        {"/FileV2/GetFileStorageAddr", "fileStorageAddr"},
        {"/MaterialV2/BatchGetMaterialMeta", "batchGetMaterialMetaData"},
    };
    std::size_t requests = 0;
    for (const auto& [path, name] : rows) {
        SCOPED_TRACE(path);
        int& status = host.answers[path.substr(path.rfind('/') + 1)].status;
        status = 500;
        EXPECT_EQ(run(), false);
        status = 200;
        EXPECT_EQ(host.requests.size(), ++requests);
        EXPECT_EQ(host.requests.back().url, "http://kelvar.test" + path);
        EXPECT_FALSE(received);
        const FakeHost::LogLine line = host.log().back();
        EXPECT_EQ(line.text, "update plugin, kelvar, task fetch, " + name + " nil .  ");
        EXPECT_EQ(line.level, 2);
    }
    host.serverAddress = nullptr;
    EXPECT_EQ(run(), false);
    XTaskKelvarFetch().check(FinishCallback()); // an empty callable is not called
}

TEST_F(FetchTask, TellsWhoAsks) {
    const std::pair<const char*, const char*> rows[] = {
        {"1001-2002-x", R"({"id":2002,"oid":1001})"},
        {"", unknown},
        {"12-34", unknown},
        {"12-34-", R"({"id":34,"oid":12})"},
        {"0-x-y-z", unknown},
        {"-7-8", R"({"id":7,"oid":-1})"},
        {"99999999999-1-x", R"({"id":1,"oid":2147483647})"},
    };
    for (const auto& [identity, asset] : rows) {
        host.user.tokenPart.identityText = identity;
        run();
        EXPECT_TRUE(sends(0, asset)) << identity;
    }
    host.user.tokenPart.present = false;
    EXPECT_TRUE(run() && sends(0, unknown));
    host.without(L"xnuser.dll");
    EXPECT_TRUE(run() && sends(0, unknown));
}

TEST_F(FetchTask, SendsAVersionOnlyWithEveryPartAtItsLeast) {
    for (const std::string stored : {"1.2.3.2000", "2.0.0.5", "1.0.0.999", "1.0.0", "1.0.0.1001.0",
                                     "", "x.y.z.w", "1.-1.0.1001"}) {
        const std::string sent = "\"" + (stored == "1.2.3.2000" ? stored : "0.0.0.0") + "\"";
        host.versions.entries["update\\version.dat"] = stored;
        run();
        EXPECT_TRUE(sends(0, R"("version":)" + sent)) << stored;
        EXPECT_TRUE(sends(1, R"("start_ver":)" + sent)) << stored;
    }
}

TEST_F(FetchTask, TestFileSetsChannelAndSwitch) {
    host.channelType = "";
    EXPECT_TRUE(run() && sends(0, R"("channel_code":"")") && sends(0, R"("params":null)"));
    host.has("test_update_kelvar.ini", "[Kelvar]\r\nchannel_id=test\r\ntest_param=1\r\n");
    EXPECT_TRUE(run() && sends(0, R"("channel_code":"test")"));
    EXPECT_TRUE(sends(0, R"("params":{"kelvar_test":"true"})"));
    EXPECT_TRUE(sends(1, R"("channel_id":"test")"));
    host.has("test_update_kelvar.ini", "");
    EXPECT_TRUE(run() && sends(0, R"("channel_code":"")") && sends(0, R"("params":null)"));
}

TEST_F(FetchTask, KeepsTheRowsThatThisMachineWantsAndKnowsTheServicePack) {
    host.has("here.dat", "x");
    host.has("bin/here.dat", "x");
    host.versions.entries["here.dat"] = "2.0.0.0";
    host.versions.entries["bin\\here.dat"] = "1.9.0.0";
    const struct {
        const char* params;
        std::string rejection; ///< by which filter; empty: the row is kept
        bool hasSp = false;
    } rows[] = {
        {R"("check_app":"%appver%>=\"1.5\"")", ""},
        {R"("check_app":"%appver%>=\"2.0\"","file_path":"here.dat")", "app"},
        {R"("osver":"10.0.19045")", ""},
        {R"("osver":"10.0.19041")", "os"},
        {R"("osver":"10.0.19045.0")", "os"},
        {R"("osver":"10.0.19045","check_sys":"%sysver%<\"1\"")", ""}, // not asked
        {R"("check_sys":"%sysver%<\"1\"")", "os"},
        {R"("check_sys":"%sysver%>=\"10.0\"")", ""},
        {R"("file_path":"here.dat")", "file"},
        {R"("file_path":"bin/here.dat")", ""},
        {R"("file_path":"dir/ORVSP.dat")", "", true},
        {R"("file_path":"orvsp.dat","osver":"6.1")", "os"},
        {R"("file_path":"orvsp.dat2")", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.params);
        offers({"", row.params, ""});
        const std::string line =
            "update plugin, kelvar, task fetch, filter " + row.rejection + " ver faild, name: 1 ";
        const std::size_t before = host.count(line);
        EXPECT_EQ(wanted(), row.rejection.empty() ? "012" : "02");
        EXPECT_EQ(host.count(line), before + (row.rejection.empty() ? 0 : 1));
        EXPECT_EQ(received->hasSp, row.hasSp);
    }
    EXPECT_EQ(received->virusLibVersion, "");
}

/// The newer file beside the client would drop the row, were it looked at.
TEST_F(FetchTask, LooksAtNoFileOutsideTheClient) {
    fake::setExecutable(host.clientPath("client\\trayhost.exe"));
    host.has("client\\inside.dat", "x");
    host.has("beside.dat", "x");
    for (const char* path : {"inside.dat", "..\\beside.dat"}) {
        host.versions.entries[path] = "9.0.0.0";
    }
    offers({R"("file_path":"inside.dat")", R"("file_path":"../beside.dat")"});
    EXPECT_EQ(wanted(), "1");
}

/// The queue drops the chain as soon as `finish` has run, while the delivery thread is
/// still on its way out of the last step.
TEST_F(FetchTask, LivesOnTheDeliveryThreadUntilFinish) {
    host.onThread = true;
    XTaskQueue& queue = immortal<XTaskQueue>(); // a worker may still hold it at the end
    for (const char* path : {"", "GetUpgradePacket", "BatchGetMaterialMeta"}) {
        host.answers[path].status = 500;
        const std::size_t runs = host.count("update plugin, queue, run end.");
        EXPECT_EQ(queue.addTask(chain()), 0);
        host.awaitLog("update plugin, queue, run end.", runs + 1);
        host.answers[path].status = 200;
    }
    EXPECT_EQ(host.count("task finished, succ: 1"), 1U);
    EXPECT_EQ(host.count("task finished, succ: 0"), 2U);
}

} // namespace
