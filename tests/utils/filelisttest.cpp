#include <gtest/gtest.h>

#include "support/fakehost.h"
#include "utils/filelist.h"

namespace {

constexpr const char* listPath = "home\\OrvSecurity\\config\\uninst\\filelist.xml";

class FileListXmlTest : public testing::Test {
protected:
    FileListXmlTest() { host.homeDirectory = host.clientPath("home"); }
    void has(const std::string& files) {
        host.has(listPath, "<?xml version=\"1.0\"?>\n<Root>\n\t<FileList>\n" + files +
                               "\t</FileList>\n</Root>\n");
    }
    std::string text() const { return host.bytesOf(listPath); }
    bool holds(const std::string& line) const { return text().find(line) != std::string::npos; }

    FakeHost host;
    XNFileListHelper helper;
};

TEST_F(FileListXmlTest, ChangesAnEntryInAnyCaseAndAddsANewOne) {
    has("\t\t<File Name=\"\" Version=\"0\" />\n"
        "\t\t<File Name=\"Bin\\A.dll\" Version=\"1\" MD5=\"m\" IsPE=\"false\" Size=\"1\" "
        "Extra=\"kept\" />\n"
        "\t\t<File Name=\"bin\\a.dll\" Version=\"second\" />\n"
        "\t\t<File Name=\"short\" Version=\"1\" />\n");
    helper.updateFileListItems({{"bin\\a.dll", "2", "M2", true, 5000000000},
                                {"short", "3", "m3", true, 3},
                                {"new.dat", "4", "m4", false, 4},
                                {"new.dat", "5", "m4", false, 4}});
    EXPECT_TRUE(holds(
        R"(<File Name="Bin\A.dll" Version="2" MD5="M2" IsPE="true" Size="5000000000" Extra="kept" />)"));
    EXPECT_TRUE(holds(R"(<File Name="bin\a.dll" Version="second" />)")) << "the first counts";
    EXPECT_TRUE(holds(R"(<File Name="short" Version="3" />)")) << "no attribute is made";
    EXPECT_TRUE(holds(R"(<File Name="new.dat" Version="5" MD5="m4" IsPE="false" Size="4" />)"));
    EXPECT_TRUE(holds("\n\t\t<File ")) << "one tab a level";
    EXPECT_EQ(host.count("updateItem, found, ret: 1 "), 3U);
}

TEST_F(FileListXmlTest, CheckDiffWritesOnlyADifference) {
    const XNFileItem item{"a.dll", "1.1", "ABC", true, 7};
    has(R"(<File Name="A.dll" Version="1.01" MD5="abc" IsPE="true" Size="7"/>)");
    const std::string before = text();
    helper.checkDiffAndUpdate({item});
    EXPECT_EQ(text(), before) << "the very bytes: not rewritten";
    const std::pair<const char*, const char*> rows[] = {
        {"version", R"(<File Name="A.dll" Version="1.1.0" MD5="abc" IsPE="true" Size="7"/>)"},
        {"hash", R"(<File Name="A.dll" Version="1.1" MD5="abd" IsPE="true" Size="7"/>)"},
        {"kind", R"(<File Name="A.dll" Version="1.1" MD5="abc" IsPE="0" Size="7"/>)"},
        {"size", R"(<File Name="A.dll" Version="1.1" MD5="abc" IsPE="1" Size="abc"/>)"},
    };
    for (const auto& [what, entry] : rows) {
        has(entry);
        helper.checkDiffAndUpdate({item});
        EXPECT_TRUE(holds(R"(<File Name="A.dll" Version="1.1" MD5="ABC" IsPE="true" Size="7" />)"))
            << what;
    }
    has("");
    helper.checkDiffAndUpdate({item});
    EXPECT_TRUE(holds(R"(<File Name="a.dll")"));
}

TEST_F(FileListXmlTest, ADocumentThatDoesNotLoadStaysAsItIs) {
    const XNFileItem item{"a", "1", "m", false, 1};
    helper.updateFileListItems({item});
    helper.checkDiffAndUpdate({item});
    EXPECT_FALSE(host.exists(listPath));
    host.has(listPath, "<Root><FileList>");
    helper.updateFileListItems({item});
    EXPECT_EQ(text(), "<Root><FileList>");
    ASSERT_EQ(host.count("load file list failed["), 3U);
    EXPECT_EQ(host.lineWith("failed[ 1 ], description[").level, 4);
    EXPECT_EQ(host.log()[1].function, "XNFileListHelper::updateFileListItems");
    EXPECT_EQ(host.log()[3].function, "XNFileListHelper::checkDiffAndUpdate");
}

TEST_F(FileListXmlTest, AnEmptyCallOpensNothing) {
    has("");
    const std::string before = text();
    helper.updateFileListItems({});
    helper.checkDiffAndUpdate({});
    EXPECT_EQ(text(), before);
    EXPECT_EQ(host.log().size(), 2U);
}

TEST_F(FileListXmlTest, ADocumentWithoutTheListIsNotGivenOne) {
    host.has(listPath, "<Root/>");
    helper.updateFileListItems({{"a", "1", "m", false, 1}});
    EXPECT_FALSE(holds("File"));
}

} // namespace
