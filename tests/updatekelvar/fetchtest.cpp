#include <gtest/gtest.h>

#include "support/fakehost.h"
#include "updatekelvar/fetch/kelvarfetch.h"

namespace {

/// Answers as data. What is asked stands in the tests of the task that asks.
class KelvarFetch : public testing::Test {
protected:
    /// A callback that puts its argument into `out`.
    template <class Data>
    static XKelvarFetch::Callback<Data> into(std::shared_ptr<Data>& out) {
        return [&out](const std::shared_ptr<Data>& data) {
            out = data;
        };
    }
    /// The list made of an answer to that many keys.
    std::shared_ptr<XBatchGetMaterialMetaData> list(std::size_t keys, const std::string& answer) {
        const XMaterialVersionKey key{{"m", {"/mod", {"prod", "chan"}}}, "2.0"};
        host.answers["BatchGetMaterialMeta"] = {0, 200, answer};
        std::shared_ptr<XBatchGetMaterialMetaData> data;
        fetch.fetchMaterialMeta(std::vector(keys, key), std::make_shared<XFileStorageAddr>(storage),
                                into(data));
        return data;
    }
    XMaterialMetaData row(const std::string& meta) {
        return list(1, R"({"metas":[{"version":7,"meta":)" + meta + "}]}")->materials.at(0);
    }

    FakeHost host;
    XKelvarFetch fetch;
    XFileStorageAddr storage{"http://files", "http://test/"};
};

TEST_F(KelvarFetch, MaterialRow) {
    const XMaterialMetaData full =
        row(R"({"file_id":"f/1","file_type":2,"md5":"M","file_hash":"h","execute_type":1,)"
            R"("execute_param":"e","is_referenced":true,"extends":{"osver":"10",)"
            R"("file_path":"dir/sub/a.dll","file_md5":"F","check_sys":"%sysver%<\"1\"",)"
            R"("check_app":"?","non_cab":"1","dependent":"d","exec":"%process%=\"a\"",)"
            R"("other":"x"},"create_time":{"seconds":5}})");
    const XMaterialKey& key = full.material;
    EXPECT_EQ(key.module.channel.productId + key.module.id + key.id, "prod/modm");
    EXPECT_EQ(full.fileId + full.md5 + full.fileMd5 + full.fileHash + full.executeParam, "f/1MFhe");
    EXPECT_EQ(full.osver + full.dependent + full.version, "10d2.0");
    EXPECT_EQ(full.filePath + full.extends.at("file_path"), "dir\\sub\\a.dlldir/sub/a.dll");
    EXPECT_EQ(full.downloadUrl, "http://files/f/1");
    EXPECT_TRUE(full.isReferenced && full.nonCab);
    EXPECT_EQ(full.fileType + full.executeType + full.createTime, 0); // none of them is read
    ASSERT_TRUE(full.checkSys && full.checkApp && full.exec);
    EXPECT_TRUE(!full.checkSys->check() && full.checkApp->check());
    XExecMap programs;
    full.exec->getExecMap(programs);
    EXPECT_EQ(programs, (XExecMap{{"a", {""}}}));
    const FakeHost::LogLine line = host.lineWith("addr:");
    EXPECT_EQ(line.text, "update plugin, kelvar, fetch material meta, addr: http://files ");
    EXPECT_EQ(line.function, "XKelvarFetch::fetchMaterialMeta::<lambda>::operator ()");

    const XMaterialMetaData bare = row(R"({"create_time":{"seconds":5},"update_time":{}})");
    EXPECT_EQ(bare.extends.size(), 8U); // made by being looked for
    EXPECT_FALSE(bare.checkSys || bare.checkApp || bare.exec || bare.nonCab);
    EXPECT_EQ(bare.createTime, 5);

    host.has("test_update_kelvar.ini", "[Kelvar]\ntest_param=1\n");
    EXPECT_EQ(row(R"({"file_id":"f"})").downloadUrl, "http://test//f");
}

TEST_F(KelvarFetch, PacketsAttributesAsFarAsTheyAreRead) {
    const struct {
        const char* meta;
        bool restartTray;
        std::int64_t createTime;
    } rows[] = {
        {R"({"extends":{"restart_tray":"1"},"create_time":{"seconds":5}})", true, 0},
        {R"({"extends":{"restart_tray":"2"}})", true, 0},
        {R"({"extends":{"restart_tray":"0"}})", false, 0},
        {R"({"extends":{"restart_tray":"yes"}})", false, 0},
        {R"({"extends":{"restart_tray":""}})", false, 0},
        {R"({"create_time":{"seconds":5}})", false, 5},
    };
    for (const auto& row : rows) {
        host.answers["GetPacketMeta"] = {0, 200, std::string(R"({"meta":)") + row.meta + "}"};
        std::shared_ptr<XPacketMetaData> data;
        fetch.fetchPacketMeta({}, into(data));
        ASSERT_TRUE(data) << row.meta;
        EXPECT_EQ(data->restartTray, row.restartTray) << row.meta;
        EXPECT_EQ(data->createTime, row.createTime) << row.meta;
    }
}

TEST_F(KelvarFetch, RowsOnlyForAnAnswerToEveryKey) {
    const struct {
        std::size_t keys;
        const char* answer;
        bool hasData;
    } rows[] = {
        {0, R"({"metas":[]})", true},
        {0, R"({"metas":[{}]})", false},
        {2, R"({"metas":[{}]})", false},
        {2, R"({"metas":[{},{}]})", true},
        {2, R"({"metas":[{},1]})", false},
        {0, "not json", true}, // all at its default
        {1, "not json", false},
        {0, "", false},
    };
    for (const auto& row : rows) {
        const auto data = list(row.keys, row.answer);
        EXPECT_EQ(data != nullptr, row.hasData) << row.keys << " keys, " << row.answer;
        EXPECT_EQ(data ? data->materials.size() : row.keys, row.keys);
    }
    EXPECT_EQ(host.count("updatekelvar, XBatchGetMaterialMetaData::~XBatchGetMaterialMetaData"),
              3U);
}

} // namespace
