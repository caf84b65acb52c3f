#include <gtest/gtest.h>

#include "support/fakehost.h"
#include "updatekelvar/fetch/kelvarfetch.h"

namespace {

const XChannelKey channel{"prod", "chan"};

XMaterialVersionKey keyOf(const std::string& id) {
    return {{id, {"/mod", channel}}, "2.0"};
}

class KelvarFetch : public testing::Test {
protected:
    void answer(const std::string& body) {
        host.onRequest = [body](const FakeHost::Request&) {
            return FakeHost::Answer{0, 200, body};
        };
    }
    void expectSent(const char* path, const std::string& body) {
        ASSERT_EQ(host.requests.size(), 1U);
        EXPECT_EQ(host.requests[0].url, std::string("http://kelvar.test") + path);
        EXPECT_EQ(host.requests[0].body, body);
    }
    /// A callback that puts its argument into `out`.
    template <class Data>
    static XKelvarFetch::Callback<Data> into(std::shared_ptr<Data>& out) {
        return [&out](const std::shared_ptr<Data>& data) {
            out = data;
        };
    }
    /// The materials of an answer with these elements of "metas"; null for none.
    std::shared_ptr<XBatchGetMaterialMetaData> materials(std::size_t keys,
                                                         const std::string& metas) {
        answer(R"({"metas":[)" + metas + "]}");
        std::shared_ptr<XBatchGetMaterialMetaData> data;
        fetch.fetchMaterialMeta(std::vector<XMaterialVersionKey>(keys, keyOf("m")),
                                std::make_shared<XFileStorageAddr>(address), into(data));
        return data;
    }

    FakeHost host;
    XKelvarFetch fetch;
    XFileStorageAddr address{"http://files", "http://test-files"};
};

TEST_F(KelvarFetch, UpgradePacket) {
    answer(R"({"target":{"channel_id":{"product_id":"p","id":"i"},"ver":"2.0"}})");
    std::shared_ptr<XUpgradePacketData> data;
    fetch.fetchUpgradePacket({"tulsar_upgrade_1.0", "1.0.0.1001", -1, -1, {}}, into(data));
    expectSent("/PacketV2/GetUpgradePacket",
               R"({"channel_code":"tulsar_upgrade_1.0","channel_unique_code":"","customer":)"
               R"({"asset_id":{"id":-1,"oid":-1},"client":""},"need_min_ver":false,)"
               R"("params":null,"species_unique_code":"","version":"1.0.0.1001"})"
               "\n");
    ASSERT_TRUE(data);
    EXPECT_EQ(data->target.channel.productId, "p");
    EXPECT_EQ(data->target.channel.id, "i");
    EXPECT_EQ(data->target.ver, "2.0");
}

TEST_F(KelvarFetch, FullPacketDiff) {
    answer(R"({"full_packet_diff":{"channel_id":"c","start_version":"1","target_version":"2",)"
           R"("rely_channels":[{"channel_id":"r"}],"modules":[{"module_id":{"channel_id":)"
           R"({"product_id":"p","id":"i"},"id":"/m"},"base_version":"3","target_version":"4",)"
           R"("is_delete":true}],"materials":[{"material_id":{"module_id":{"id":"/n"},"id":"x"},)"
           R"("base_version":"5","target_version":"6"}],"is_delete":true}})");
    std::shared_ptr<XFullPacketDiffData> data;
    fetch.fetchFullPacketDiff({"c", "1", "2"}, into(data));
    expectSent("/PacketV2/GetFullPacketDiff",
               "{\"channel_id\":\"c\",\"start_ver\":\"1\",\"target_ver\":\"2\"}\n");
    ASSERT_TRUE(data);
    EXPECT_EQ(data->channelId + data->startVersion + data->targetVersion, "c12");
    EXPECT_TRUE(data->isDelete);
    ASSERT_EQ(data->modules.size(), 1U);
    const XModuleCouple& module = data->modules[0];
    EXPECT_EQ(module.module.channel.productId + module.module.channel.id + module.module.id,
              "pi/m");
    EXPECT_EQ(module.baseVersion + module.targetVersion, "34");
    EXPECT_TRUE(module.isDelete);
    ASSERT_EQ(data->materials.size(), 1U);
    const XMaterialCouple& material = data->materials[0];
    EXPECT_EQ(material.material.module.id + material.material.id, "/nx");
    EXPECT_EQ(material.baseVersion + material.targetVersion, "56");
    EXPECT_FALSE(material.isDelete);
}

TEST_F(KelvarFetch, PacketMeta) {
    const struct {
        const char* meta;
        bool restartTray;
        std::int64_t createTime;
    } rows[] = {
        {R"({"extends":{"restart_tray":"1"},"file_id":"f","create_time":{"seconds":5}})", true, 0},
        {R"({"extends":{"restart_tray":"0"}})", false, 0},
        {R"({"extends":{"restart_tray":"yes"}})", false, 0},
        {R"({"extends":{"restart_tray":""}})", false, 0},
        {R"({"file_id":"f","create_time":{"seconds":5},"update_time":{"seconds":6}})", false, 5},
    };
    for (const auto& row : rows) {
        host.requests.clear();
        answer(std::string(R"({"meta":)") + row.meta + "}");
        std::shared_ptr<XPacketMetaData> data;
        fetch.fetchPacketMeta({channel, "2.0"}, into(data));
        expectSent("/PacketV2/GetPacketMeta",
                   R"({"key":{"channel_id":{"id":"chan","product_id":"prod"},"ver":"2.0"},)"
                   R"("subscriber":""})"
                   "\n");
        ASSERT_TRUE(data);
        EXPECT_EQ(data->restartTray, row.restartTray) << row.meta;
        EXPECT_EQ(data->createTime, row.createTime) << row.meta;
        EXPECT_EQ(data->updateTime, row.createTime ? 6 : 0) << row.meta;
        EXPECT_EQ(data->fileId, row.createTime ? "f" : "") << row.meta;
    }
}

TEST_F(KelvarFetch, FileStorageAddr) {
    answer(R"({"normal_file_addr":"n","docker_file_addr":"d","test_file_addr":"t"})");
    std::shared_ptr<XFileStorageAddr> data;
    fetch.fetchFileStorageAddr(into(data));
    expectSent("/FileV2/GetFileStorageAddr", "");
    ASSERT_TRUE(data);
    EXPECT_EQ(data->normalFileAddr + data->testFileAddr, "nt");
}

TEST_F(KelvarFetch, AsksForEachMaterialInItsOrder) {
    fetch.fetchMaterialMeta({keyOf("a"), keyOf("b")}, std::make_shared<XFileStorageAddr>(),
                            [](const auto&) {});
    const auto key = [](const std::string& id) {
        return R"({"key":{"material_id":{"id":")" + id +
               R"(","module_id":{"channel_id":{"id":"chan","product_id":"prod"},"id":"/mod"}},)"
               R"("ver":"2.0"},"subscriber":""})";
    };
    expectSent("/MaterialV2/BatchGetMaterialMeta",
               R"({"keys":[)" + key("a") + "," + key("b") + "]}\n");
}

TEST_F(KelvarFetch, MaterialRow) {
    const auto data = materials(
        1, R"({"version":7,"meta":{"file_id":"f/1","file_type":2,"md5":"M","file_hash":"h",)"
           R"("execute_type":1,"execute_param":"e","is_referenced":true,"extends":{"osver":"10",)"
           R"("file_path":"dir/sub/a.dll","file_md5":"F","check_sys":"%sysver%<\"1\"",)"
           R"("check_app":"?","non_cab":"1","dependent":"d","exec":"%process%=\"a\"",)"
           R"("other":"x"},"create_time":{"seconds":5}}})");
    ASSERT_TRUE(data);
    ASSERT_EQ(data->materials.size(), 1U);
    const XMaterialMetaData& row = data->materials[0];
    EXPECT_EQ(row.material.module.channel.productId + row.material.module.id + row.material.id,
              "prod/modm");
    EXPECT_EQ(row.fileId + row.md5 + row.fileMd5 + row.fileHash + row.executeParam, "f/1MFhe");
    EXPECT_EQ(row.osver + row.dependent + row.version, "10d2.0");
    EXPECT_EQ(row.filePath, "dir\\sub\\a.dll");
    EXPECT_EQ(row.downloadUrl, "http://files/f/1");
    EXPECT_TRUE(row.isReferenced);
    EXPECT_TRUE(row.nonCab);
    EXPECT_EQ(row.fileType + row.executeType, 0);  // singular enumerations are not read
    EXPECT_EQ(row.createTime + row.updateTime, 0); // behind the parameters
    EXPECT_EQ(row.extends.size(), 8U);
    EXPECT_EQ(row.extends.at("file_path"), "dir/sub/a.dll");
    ASSERT_TRUE(row.checkSys && row.checkApp && row.exec);
    EXPECT_FALSE(row.checkSys->check());
    EXPECT_TRUE(row.checkApp->check());
    XExecMap programs;
    row.exec->getExecMap(programs);
    EXPECT_EQ(programs, (XExecMap{{"a", {""}}}));
    EXPECT_FALSE(data->hasSp);
    EXPECT_EQ(data->version + data->virusLibVersion, "");
    EXPECT_EQ(host.lineWith("addr:").text,
              "update plugin, kelvar, fetch material meta, addr: http://files ");
    EXPECT_EQ(host.lineWith("addr:").function,
              "XKelvarFetch::fetchMaterialMeta::<lambda>::operator ()");
}

TEST_F(KelvarFetch, MaterialRowWithoutParameters) {
    const auto data = materials(1, R"({"meta":{"file_id":"f","create_time":{"seconds":5}}})");
    ASSERT_TRUE(data);
    const XMaterialMetaData& row = data->materials.at(0);
    EXPECT_EQ(row.extends.size(), 8U); // made by being looked for
    EXPECT_EQ(row.extends.count("check_app"), 1U);
    EXPECT_FALSE(row.checkSys || row.checkApp || row.exec || row.nonCab);
    EXPECT_EQ(row.createTime, 5);
}

TEST_F(KelvarFetch, RowsOnlyForAnAnswerToEveryKey) {
    const struct {
        std::size_t keys;
        const char* metas;
        bool hasData;
    } rows[] = {
        {0, "", true}, {0, "{}", false}, {2, "{}", false}, {2, "{},{}", true}, {2, "{},1", false}};
    for (const auto& row : rows) {
        const auto data = materials(row.keys, row.metas);
        EXPECT_EQ(data != nullptr, row.hasData) << row.keys << " keys, " << row.metas;
        EXPECT_EQ(data ? data->materials.size() : row.keys, row.keys);
    }
    EXPECT_EQ(host.requests[0].body, "null\n"); // no keys leave nothing to write
    EXPECT_EQ(host.count("updatekelvar, XBatchGetMaterialMetaData::~XBatchGetMaterialMetaData"),
              2U);
}

TEST_F(KelvarFetch, TestSwitchTakesTheTestStorage) {
    const struct {
        const char* file;
        const char* testAddress;
        const char* url;
    } rows[] = {
        {"[Kelvar]\r\n", "http://t", "http://files/f"},
        {"[Kelvar]\r\ntest_param=1\r\n", "http://t/", "http://t//f"},
        {"[Kelvar]\r\ntest_param=1\r\n", "", "/f"},
    };
    for (const auto& row : rows) {
        host.has("test_update_kelvar.ini", row.file);
        address.testFileAddr = row.testAddress;
        EXPECT_EQ(materials(1, R"({"meta":{"file_id":"f"}})")->materials.at(0).downloadUrl,
                  row.url);
    }
}

TEST_F(KelvarFetch, NullForNoAnswerAndDefaultsForNoJson) {
    const auto fails = [this] {
        auto data = std::make_shared<XUpgradePacketData>();
        fetch.fetchUpgradePacket({}, into(data));
        auto rows = std::make_shared<XBatchGetMaterialMetaData>();
        fetch.fetchMaterialMeta({}, std::make_shared<XFileStorageAddr>(), into(rows));
        return !data && !rows;
    };
    EXPECT_TRUE(fails()); // status 404
    answer("");
    EXPECT_TRUE(fails());
    answer("not json");
    EXPECT_FALSE(fails());
    host.serverAddress = nullptr;
    EXPECT_TRUE(fails());
}

} // namespace
