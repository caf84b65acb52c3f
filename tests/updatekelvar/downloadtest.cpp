#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>

#include "support/material.h"
#include "updatekelvar/task/xtaskkelvardownload.h"

namespace {

/// Keeps what the step before hands on.
class Next final : public XTaskBase {
public:
    using XTaskBase::check;
    void check(const XBatchGetMaterialMetaData* data, FinishCallback /*finish*/) override {
        handed = std::make_unique<XBatchGetMaterialMetaData>(*data);
        source = data;
    }
    std::unique_ptr<XBatchGetMaterialMetaData> handed;
    const XBatchGetMaterialMetaData* source = nullptr;
};

class DownloadTest : public testing::Test {
protected:
    DownloadTest() {
        host.onTransfer = [this](const std::string& url) {
            const auto found = storage.find(url);
            return found != storage.end() ? found->second : FakeHost::Transfer{7, "", 1};
        };
    }
    XMaterialMetaData& offer(const std::string& content) {
        list.materials.push_back(material::plain("a", "1", material::bytes(content)));
        XMaterialMetaData& row = list.materials.back();
        row.downloadUrl = "http://s/" + content;
        storage[row.downloadUrl] = {0, content, 3};
        return row;
    }
    std::string fileOf(const XMaterialMetaData& row) { return host.bytesOf("update\\" + row.md5); }

    /// Whether the chain went on; it ends with finish(false) otherwise.
    bool goesOn(const XBatchGetMaterialMetaData* data) {
        next = std::make_shared<Next>();
        XTaskKelvarDownload task;
        task.setNext(next);
        std::vector<bool> values;
        task.check(data, [&](bool succ) { values.push_back(succ); });
        EXPECT_EQ(values, next->handed ? std::vector<bool>{} : std::vector<bool>{false});
        return next->handed != nullptr;
    }
    bool goesOn() { return goesOn(&list); }

    FakeHost host;
    std::map<std::string, FakeHost::Transfer> storage;
    XBatchGetMaterialMetaData list;
    std::shared_ptr<Next> next;
};

TEST_F(DownloadTest, FetchesWhatIsNotThereUnderTheNameOfItsHash) {
    offer("first file");
    offer("second file");
    list.version = "v";
    EXPECT_TRUE(goesOn());
    EXPECT_EQ(fileOf(list.materials[0]), "first file");
    EXPECT_EQ(fileOf(list.materials[1]), "second file");
    EXPECT_EQ(next->handed->version, "v");
    EXPECT_NE(next->source, &list) << "a deep copy of its own";
    const std::pair<int, long> verifyPeerOff{64, 0};
    EXPECT_EQ(host.numberOptions, std::vector(2, verifyPeerOff));
}

TEST_F(DownloadTest, ReusesAWholeFileAndReplacesABrokenOne) {
    const std::string whole = offer("whole").md5;
    const std::string broken = offer("broken").md5;
    offer("whole"); // a second row with the same hash shares the file
    std::string upper = whole;
    std::transform(upper.begin(), upper.end(), upper.begin(), ::toupper);
    list.materials[0].md5 = upper;
    host.has("update\\" + upper, "whole");
    host.has("update\\" + broken, "much longer than it should be");
    EXPECT_TRUE(goesOn());
    EXPECT_EQ(host.transfers, (std::vector<std::string>{"http://s/broken"}));
    EXPECT_EQ(host.bytesOf("update\\" + broken), "broken");
    EXPECT_EQ(host.count("task download, have local file:"), 2U);
}

TEST_F(DownloadTest, AFailedRowEndsTheChainAfterAllWereTried) {
    offer("one");
    XMaterialMetaData& two = offer("two");
    storage[two.downloadUrl].code = 56;
    offer("three").downloadUrl = "";
    offer("four");
    EXPECT_FALSE(goesOn());
    EXPECT_TRUE(host.logged("update plugin, download task, perform err: 56 "));
    EXPECT_TRUE(host.logged("update plugin, download task, param err, url:  "));
    EXPECT_EQ(fileOf(list.materials[0]), "one");
    EXPECT_EQ(fileOf(list.materials[1]), "two") << "what was received stays";
    EXPECT_EQ(fileOf(list.materials[3]), "four");
    EXPECT_FALSE(host.exists("update\\" + list.materials[2].md5));
    list.materials = {list.materials[2]};
    EXPECT_FALSE(goesOn()) << "for want of an address alone";
}

TEST_F(DownloadTest, AWrongBodyIsNotNoticedHere) {
    storage[offer("right").downloadUrl].body = "an error page";
    EXPECT_TRUE(goesOn());
}

TEST_F(DownloadTest, NamesThatAreNoPlainNamesFailBeforeAFileIsOpened) {
    const char* names[] = {"", ".", "..", "..\\x", "a/b", "c:x", "\\x", "\xff"};
    for (const char* name : names) {
        list.materials.clear();
        offer("content").md5 = name;
        offer("other");
        EXPECT_FALSE(goesOn()) << name;
        EXPECT_TRUE(host.logged("task download, bad name, md5: " + std::string(name) + " "));
        EXPECT_TRUE(host.exists("update\\" + list.materials[1].md5)) << "the others are fetched";
    }
    list.materials.clear();
    offer("content").fileMd5 = "..\\y";
    EXPECT_FALSE(goesOn());
    list.materials[0].fileMd5 = "";
    EXPECT_TRUE(goesOn()) << "the move refuses such a row by itself";
    EXPECT_FALSE(std::filesystem::exists(host.diskPath("x")));
}

TEST_F(DownloadTest, AFolderInTheFilesPlaceFailsTheRow) {
    std::filesystem::create_directories(host.diskPath("update\\" + offer("a").md5));
    EXPECT_FALSE(goesOn());
    EXPECT_TRUE(host.logged("download task, open err, path "));
}

TEST_F(DownloadTest, WithoutAnApplicationFolderNothingIsTried) {
    offer("a");
    fake::setExecutable("");
    EXPECT_FALSE(goesOn());
    EXPECT_TRUE(host.transfers.empty());
}

TEST_F(DownloadTest, WithoutTheServiceNothingIsTried) {
    EXPECT_TRUE(goesOn()) << "an empty list";
    EXPECT_FALSE(goesOn(nullptr));
    host.withoutId(L"module.libcurl");
    EXPECT_FALSE(goesOn());
    offer("a");
    EXPECT_FALSE(goesOn());
    EXPECT_FALSE(host.logged("download name:"));
    XTaskKelvarDownload().check(nullptr, nullptr);
}

} // namespace
