#include <gtest/gtest.h>

#include "host/settings.h"
#include "support/fakehost.h"
#include "utils/utils.h"

namespace {

TEST(SettingsTest, ReadsGiveTheDefaultForEveryLack) {
    FakeHost host;
    std::string text = "old";
    EXPECT_FALSE(readSettingString("key", text, "default"));
    EXPECT_EQ(text, "default");
    EXPECT_TRUE(writeSettingString("key", "value"));
    EXPECT_TRUE(readSettingString("key", text, "default"));
    EXPECT_EQ(text, "value");
    host.settings.failTextReads = true;
    EXPECT_FALSE(readSettingString("key", text, "default"));
    EXPECT_EQ(text, "default");

    constexpr std::uint64_t defaultWide = 7;
    constexpr std::uint32_t defaultNarrow = 8;
    std::uint64_t wide = 0;
    std::uint32_t narrow = 0;
    EXPECT_FALSE(readSettingUInt64("number", &wide, &defaultWide));
    EXPECT_FALSE(readSettingUInt32("number", &narrow, &defaultNarrow));
    EXPECT_EQ(wide, 7U);
    EXPECT_EQ(narrow, 8U);
    EXPECT_TRUE(writeSettingUInt64("number", 1));
    EXPECT_TRUE(readSettingUInt64("number", &wide, &defaultWide));
    EXPECT_TRUE(readSettingUInt32("number", &narrow, &defaultNarrow));
    EXPECT_EQ(wide + narrow, 2U);

    host.without(L"XNSetting.dll");
    EXPECT_FALSE(readSettingString("key", text, "gone"));
    EXPECT_EQ(text, "gone");
    EXPECT_FALSE(readSettingUInt64("number", &wide, &defaultWide));
    EXPECT_EQ(wide, 7U);
    EXPECT_FALSE(writeSettingString("key", "x"));
    EXPECT_FALSE(writeSettingUInt64("number", 1));
}

using Names = std::vector<std::string>;
using Targets = std::map<std::string, std::string>;

TEST(StoredListTest, TheTempListKeepsItsTextForAnEmptyList) {
    FakeHost host;
    const std::string key = settingkeys::kelvarTempFileList;
    utils::saveTempFileList({"b", "a", "b"});
    EXPECT_EQ(host.settings.text(key), R"(["b","a","b"])");
    utils::saveTempFileList({});
    EXPECT_EQ(host.settings.text(key), R"(["b","a","b"])");
    Names names;
    utils::loadTempFileList(names);
    EXPECT_EQ(names, (Names{"b", "a", "b"}));
    utils::clearTempFileList();
    utils::loadTempFileList(names);
    EXPECT_EQ(names.size(), 3U) << "an empty value leaves the argument alone";
    EXPECT_EQ(host.settings.text(key), "");
}

TEST(StoredListTest, WrongStoredTextsAreReadAsFarAsTheyGo) {
    FakeHost host;
    const std::pair<const char*, Names> rows[] = {
        {R"(["a",1,null,{"b":1},"c"])", {"a", "c"}}, {R"({"a":"b"})", {}}, {"5", {}}};
    for (const auto& [text, expected] : rows) {
        host.settings.put(settingkeys::kelvarTempFileList, text);
        Names names{"old"};
        utils::loadTempFileList(names);
        EXPECT_EQ(names, expected) << text;
    }
    host.settings.put(settingkeys::kelvarPaddingFileList, R"(["a"])");
    Targets targets{{"old", "x"}};
    utils::loadPaddingFileList(targets);
    EXPECT_TRUE(targets.empty());
    for (const char* text : {"{", R"({"a":1})"}) {
        host.settings.put(settingkeys::kelvarPaddingFileList, text);
        EXPECT_ANY_THROW(utils::loadPaddingFileList(targets)) << text;
    }
    host.settings.put(settingkeys::kelvarTempFileList, "[");
    Names names;
    EXPECT_ANY_THROW(utils::loadTempFileList(names));
    EXPECT_ANY_THROW(utils::saveTempFileList({"\xff"}));
}

TEST(StoredListTest, ThePaddingListIsAnObjectInKeyOrder) {
    FakeHost host;
    const std::string key = settingkeys::kelvarPaddingFileList;
    utils::savePaddingFileList({{"bin\\b.dll", "2"}, {"bin\\a.dll", "\\1"}});
    EXPECT_EQ(host.settings.text(key), R"({"bin\\a.dll":"\\1","bin\\b.dll":"2"})");
    utils::savePaddingFileList({});
    Targets targets;
    utils::loadPaddingFileList(targets);
    EXPECT_EQ(targets, (Targets{{"bin\\a.dll", "\\1"}, {"bin\\b.dll", "2"}}));
    utils::clearPaddingFileList();
    EXPECT_EQ(host.settings.text(key), "");
}

} // namespace
