#include <gtest/gtest.h>

#include <optional>

#include "support/fakehost.h"
#include "updatekelvar/task/kelvaridentity.h"
#include "updatekelvar/task/xtaskkelvarfetch.h"
#include "xtaskqueue.h"

namespace {

/// Stands behind the fetch task and keeps what it is given.
class Receiver final : public XTaskBase {
public:
    using XTaskBase::check;
    void check(const XBatchGetMaterialMetaData* data, FinishCallback finish) override {
        got = *data;
        end(finish, true);
    }

    std::optional<XBatchGetMaterialMetaData> got;
};

/// A material that the platform offers; texts of its parameters as JSON members.
struct Offer {
    std::string name;
    std::string params;
    std::string version = "2.0.0.0";
};

class FetchTask : public testing::Test {
protected:
    FetchTask() {
        host.versions.entries["update\\version.dat"] = "1.0.0.1001";
        host.versions.entries["OrvSecurityver.dll"] = "1.5.0.0";
        host.onRequest = [this](const FakeHost::Request& request) {
            return answer(request);
        };
    }
    ~FetchTask() override { kelvaridentity::setTestParam(false); }

    void offers(std::vector<Offer> materials) { offered = std::move(materials); }
    void fails(const std::string& path) { failing = path; }

    /// Runs the task alone; how it ended, nothing when it did not.
    std::optional<bool> run() {
        host.requests.clear();
        receiver = std::make_shared<Receiver>();
        std::optional<bool> ended;
        XTaskKelvarFetch task;
        task.setNext(receiver);
        task.check([&ended](bool succ) {
            EXPECT_FALSE(ended) << "finished twice";
            ended = succ;
        });
        return ended;
    }
    /// The names of the rows that reach the next task, joined.
    std::string wanted() {
        EXPECT_EQ(run(), true);
        std::string names;
        for (const XMaterialMetaData& row : receiver->got.value().materials) {
            names += row.md5;
        }
        return names;
    }
    std::string sent(std::size_t request) const { return host.requests.at(request).body; }
    bool sentHas(std::size_t request, const std::string& text) const {
        return sent(request).find(text) != std::string::npos;
    }

    FakeHost host;
    std::shared_ptr<Receiver> receiver;
    std::string modules;

private:
    FakeHost::Answer answer(const FakeHost::Request& request) const {
        const std::string path = request.url.substr(request.url.rfind('/') + 1);
        if (path == failing) {
            return {0, 500, "{}"};
        }
        if (path == "GetUpgradePacket") {
            return {0, 200, R"({"target":{"channel_id":{"id":"i"},"ver":"9.0"}})"};
        }
        if (path == "GetFullPacketDiff") {
            return {0, 200,
                    R"({"full_packet_diff":{"target_version":"9.1","modules":[)" + modules +
                        R"(],"materials":[)" + rows(&couple) + "]}}"};
        }
        if (path == "BatchGetMaterialMeta") {
            return {0, 200, R"({"metas":[)" + rows(&meta) + "]}"};
        }
        return {0, 200, R"({"normal_file_addr":"http://files"})"};
    }
    std::string rows(std::string (*make)(const Offer&)) const {
        std::string text;
        for (const Offer& offer : offered) {
            text += (text.empty() ? "" : ",") + make(offer);
        }
        return text;
    }
    static std::string couple(const Offer& offer) {
        return R"({"material_id":{"id":")" + offer.name + R"("},"target_version":")" +
               offer.version + R"(","is_delete":true})";
    }
    static std::string meta(const Offer& offer) {
        return R"({"meta":{"md5":")" + offer.name + R"(","extends":{)" + offer.params + "}}}";
    }

    std::vector<Offer> offered;
    std::string failing;
};

TEST_F(FetchTask, AsksFiveQuestionsInOrder) {
    modules = R"({"module_id":{"id":"/other"},"target_version":"7"},)"
              R"({"module_id":{"id":"/orvviruslib"},"target_version":"8"},)"
              R"({"module_id":{"id":"/orvviruslib"},"target_version":"9"})";
    offers({{"a", R"("file_path":"bin/a.dll")"}, {"b", R"("file_path":"bin/b.dll")", "3.0"}});
    EXPECT_EQ(wanted(), "ab");
    const char* paths[] = {"/PacketV2/GetUpgradePacket", "/PacketV2/GetFullPacketDiff",
                           "/PacketV2/GetPacketMeta", "/FileV2/GetFileStorageAddr",
                           "/MaterialV2/BatchGetMaterialMeta"};
    ASSERT_EQ(host.requests.size(), std::size(paths));
    for (std::size_t i = 0; i < std::size(paths); ++i) {
        EXPECT_EQ(host.requests[i].url, std::string("http://kelvar.test") + paths[i]);
    }
    EXPECT_EQ(sent(1), R"({"channel_id":"tulsar_upgrade_1.0","start_ver":"1.0.0.1001",)"
                       R"("target_ver":"9.0"})"
                       "\n");
    EXPECT_TRUE(sentHas(2, R"("id":"i")") && sentHas(2, R"("ver":"9.0")"));
    EXPECT_EQ(receiver->got->version, "9.1");
    EXPECT_EQ(receiver->got->virusLibVersion, "8");
    EXPECT_FALSE(receiver->got->hasSp);
    EXPECT_EQ(receiver->got->materials[1].version, "3.0");
    EXPECT_EQ(receiver->got->materials[1].downloadUrl, "http://files/");
    EXPECT_EQ(host.count("update plugin, kelvar, task fetch, check ..."), 1U);
}

TEST_F(FetchTask, EndsAtAQuestionWithoutAnAnswer) {
    const struct {
        const char* path;
        const char* line;
        std::size_t requests;
    } rows[] = {
        {"GetUpgradePacket", "upgradePacketData nil . ", 1},
        {"GetFullPacketDiff", "fullPacketDiffData nil . ", 2},
        {"GetPacketMeta", "getPacketMeta nil . ", 3},
        {"GetFileStorageAddr", "fileStorageAddr nil . ", 4},
        {"BatchGetMaterialMeta", "batchGetMaterialMetaData nil . ", 5},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.path);
        fails(row.path);
        EXPECT_EQ(run(), false);
        EXPECT_EQ(host.requests.size(), row.requests);
        EXPECT_FALSE(receiver->got);
        const std::string line = std::string("update plugin, kelvar, task fetch, ") + row.line;
        EXPECT_EQ(host.lineWith(row.line).text, line + " ");
        EXPECT_EQ(host.lineWith(row.line).level, 2);
    }
    XTaskKelvarFetch().check(FinishCallback()); // an empty callable is not called
}

TEST_F(FetchTask, TellsWhoAsks) {
    const struct {
        const char* identity; ///< null: no valid log-in
        const char* sent;
    } rows[] = {
        {"1001-2002-x", R"({"id":2002,"oid":1001})"},
        {nullptr, R"({"id":-1,"oid":-1})"},
        {"12-34", R"({"id":-1,"oid":-1})"},
        {"", R"({"id":-1,"oid":-1})"},
        {"12-34-", R"({"id":34,"oid":12})"},
        {"0-x-y-z", R"({"id":-1,"oid":-1})"},
        {"-7-8", R"({"id":7,"oid":-1})"},
        {"99999999999-1-x", R"({"id":1,"oid":2147483647})"},
    };
    for (const auto& row : rows) {
        host.user.tokenPart.identityText = row.identity ? row.identity : "1-2-3";
        host.user.tokenPart.valid = row.identity != nullptr;
        run();
        EXPECT_TRUE(sentHas(0, row.sent)) << row.identity << ": " << sent(0);
    }
    host.user.tokenPart.valid = true;
    host.user.tokenPart.present = false;
    run();
    EXPECT_TRUE(sentHas(0, R"({"id":-1,"oid":-1})"));
    host.without(L"xnuser.dll");
    run();
    EXPECT_TRUE(sentHas(0, R"({"id":-1,"oid":-1})"));
}

TEST_F(FetchTask, SendsAVersionOnlyWithEveryPartAtItsLeast) {
    for (const std::string stored : {"1.0.0.1001", "1.2.3.2000", "2.0.0.5", "1.0.0.999", "1.0.0",
                                     "1.0.0.1001.0", "", "x.y.z.w", "1.-1.0.1001"}) {
        const bool good = stored == "1.0.0.1001" || stored == "1.2.3.2000";
        const std::string sentVersion = good ? stored : "0.0.0.0";
        host.versions.entries["update\\version.dat"] = stored;
        run();
        EXPECT_TRUE(sentHas(0, R"("version":")" + sentVersion + "\"")) << stored;
        EXPECT_TRUE(sentHas(1, R"("start_ver":")" + sentVersion + "\"")) << stored;
    }
}

TEST_F(FetchTask, TestFileSetsChannelAndSwitch) {
    host.channelType = "";
    run();
    EXPECT_TRUE(sentHas(0, R"("channel_code":"")") && sentHas(0, R"("params":null)"));
    host.has("test_update_kelvar.ini", "[Kelvar]\r\nchannel_id=test\r\ntest_param=1\r\n");
    run();
    EXPECT_TRUE(sentHas(0, R"("channel_code":"test")"));
    EXPECT_TRUE(sentHas(0, R"("params":{"kelvar_test":"true"})"));
    EXPECT_TRUE(sentHas(1, R"("channel_id":"test")"));
    host.has("test_update_kelvar.ini", "");
    run();
    EXPECT_TRUE(sentHas(0, R"("channel_code":"")") && sentHas(0, R"("params":null)"));
}

TEST_F(FetchTask, KeepsTheRowsThatThisMachineWants) {
    host.has("here.dat", "x");
    host.has("bin/here.dat", "x");
    host.versions.entries["here.dat"] = "2.0.0.0";
    host.versions.entries["bin\\here.dat"] = "1.9.0.0";
    const std::string app = "filter app ver faild, name: ";
    const std::string os = "filter os ver faild, name: ";
    const std::string file = "filter file ver faild, name: ";
    const struct {
        const char* params;
        std::string rejection; ///< empty: the row is kept
    } rows[] = {
        {"", ""},
        {R"("check_app":"%appver%>=\"1.5\"")", ""},
        {R"("check_app":"%appver%>=\"2.0\"","file_path":"here.dat")", app},
        {R"("osver":"10.0.19045")", ""},
        {R"("osver":"10.0.19041")", os},
        {R"("osver":"10.0.19045.0")", os},
        {R"("osver":"10.0.19045","check_sys":"%sysver%<\"1\"")", ""}, // not asked
        {R"("check_sys":"%sysver%<\"1\"")", os},
        {R"("check_sys":"%sysver%>=\"10.0\"")", ""},
        {R"("file_path":"absent.dat")", ""},
        {R"("file_path":"here.dat")", file},
        {R"("file_path":"bin/here.dat")", ""},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.params);
        offers({{"1", ""}, {"M", row.params}, {"2", ""}});
        const std::size_t before = host.count(row.rejection + "M ");
        EXPECT_EQ(wanted(), row.rejection.empty() ? "1M2" : "12");
        if (!row.rejection.empty()) {
            EXPECT_EQ(host.count("update plugin, kelvar, task fetch, " + row.rejection + "M "),
                      before + 1);
        }
    }
}

TEST_F(FetchTask, KnowsTheServicePackAmongTheKeptRows) {
    const struct {
        const char* params;
        bool hasSp;
    } rows[] = {
        {R"("file_path":"dir/ORVSP.dat")", true},
        {R"("file_path":"orvsp.dat")", true},
        {R"("file_path":"orvsp.dat","osver":"6.1")", false},
        {R"("file_path":"orvsp.dat2")", false},
        {R"("file_path":"orvsp.dat/x")", false},
        {"", false},
    };
    for (const auto& row : rows) {
        offers({{"a", R"("file_path":"b")"}, {"M", row.params}});
        run();
        EXPECT_EQ(receiver->got.value().hasSp, row.hasSp) << row.params;
    }
}

TEST_F(FetchTask, HandsOnAnEmptyResultTooWithTheVirusLibrarysVersion) {
    EXPECT_EQ(wanted(), "");
    EXPECT_EQ(sent(4), "null\n");
    EXPECT_EQ(receiver->got->virusLibVersion, "");
    modules = R"({"module_id":{"id":"/ORVVIRUSLIB"},"target_version":"7"},)"
              R"({"module_id":{"id":"/orvviruslib"},"target_version":"8"})";
    EXPECT_EQ(wanted(), "");
    EXPECT_EQ(receiver->got->virusLibVersion, "8");
}

TEST_F(FetchTask, NeitherGoesOnNorEndsWithoutHttp) {
    for (const char* name : {"asyncHttp", "newRequest", "newRequestHeader"}) {
        host.without(L"xnbase.dll", name);
    }
    EXPECT_EQ(run(), std::nullopt);
    host.without(L"xnbase.dll", "envConfigInstance"); // no address: no request either
    EXPECT_EQ(run(), false);
}

/// Ends the chain and keeps nothing, so that it may go after the host of the test.
class Ender final : public XTaskBase {
public:
    using XTaskBase::check;
    void check(const XBatchGetMaterialMetaData* /*data*/, FinishCallback finish) override {
        end(finish, true);
    }
};

/// The queue drops the chain as soon as `finish` has run, while the delivery thread is
/// still on its way out of the last step.
TEST_F(FetchTask, LivesOnTheDeliveryThreadUntilFinish) {
    host.onThread = true;
    static XTaskQueue& queue = *new XTaskQueue; // a worker may still hold it at the end
    for (const char* path : {"", "GetUpgradePacket", "BatchGetMaterialMeta"}) {
        fails(path);
        const std::size_t runs = host.count("update plugin, queue, run end.");
        auto task = std::make_shared<XTaskKelvarFetch>();
        task->setNext(std::make_shared<Ender>());
        EXPECT_EQ(queue.addTask(std::move(task)), 0);
        host.awaitLog("update plugin, queue, run end.", runs + 1);
    }
    EXPECT_EQ(host.count("task finished, succ: 1"), 1U);
    EXPECT_EQ(host.count("task finished, succ: 0"), 2U);
}

} // namespace
