#include "platform/ini.h"

#include "temporaryfolder.h"

#include <gtest/gtest.h>

namespace {

class Ini : public testing::Test {
protected:
    void has(const std::string& text) { file = folder.write("settings.ini", text); }
    void hasValue(const std::string& value) { has("[Kelvar]\nid=" + value + "\n"); }

    std::string text(const char* key, const char* other = "other", std::size_t limit = 256) const {
        return platform::profileString(file, "Kelvar", key, other, limit);
    }
    int number(const char* key) const { return platform::profileInt(file, "Kelvar", key, 60); }

    TemporaryFolder folder;
    std::string file = folder.path("settings.ini");
};

TEST_F(Ini, FindsTheKey) {
    const struct {
        const char* name;
        const char* file;
        const char* value;
    } rows[] = {
        {"line ends", "[Kelvar]\r\nid=a b\r\n", "a b"},
        {"no last line end", "[Kelvar]\nid=a", "a"},
        {"other case", "[kELVAR]\nID=a\n", "a"},
        {"blanks", "  [ Kelvar ]  \n \t id \t = \t a \t\n", "a"},
        {"comment", "[Kelvar]\n;id=a\nid=b\n", "b"},
        {"first key counts", "[Kelvar]\nid=a\nid=b\n", "a"},
        {"longer name before it", "[Kelvar]\nids=a\nid=b\n", "b"},
        {"other section", "[x]\nid=a\n[Kelvar]\nid=b\n", "b"},
        {"behind the section", "[Kelvar]\n[x]\nid=a\n", "other"},
        {"before any section", "id=a\n[Kelvar]\n", "other"},
    };
    for (const auto& row : rows) {
        has(row.file);
        EXPECT_EQ(text("id"), row.value) << row.name;
    }
}

TEST_F(Ini, ReadsText) {
    EXPECT_EQ(text("id", " a "), " a") << "a default loses its trailing blanks";
    const std::pair<const char*, const char*> rows[] = {
        {"\" a \"", " a "}, {"'a'", "a"}, {"\"\"a\"\"", "\"a\""}, {"\"a'", "\"a'"}, {"a;b", "a;b"},
        {"a=b", "a=b"},     {"", ""},
    };
    for (const auto& [value, read] : rows) {
        hasValue(value);
        EXPECT_EQ(text("id"), read) << value;
    }
    hasValue("abcdef");
    EXPECT_EQ(text("id", "", 4), "abc");
    EXPECT_EQ(text("other", "abcdef", 4), "abc");
    hasValue(std::string(10000, 'a'));
    EXPECT_EQ(text("id"), std::string(255, 'a'));
}

TEST_F(Ini, ReadsIntegers) {
    EXPECT_EQ(number("id"), 60);
    const std::pair<const char*, int> rows[] = {
        {"5", 5},     {"-5", -5},        {"+5", 5},  {"12ab", 12}, {"ab", 0},
        {"0x1F", 31}, {"0xg", 0},        {"", 60},   {"\"7\"", 7}, {"- 5", 0},
        {"010", 10},  {"4294967297", 1}, {"1.9", 1},
    };
    for (const auto& [value, read] : rows) {
        hasValue(value);
        EXPECT_EQ(number("id"), read) << value;
    }
    hasValue("2147483647");
    EXPECT_EQ(number("id"), 2147483647);
    EXPECT_EQ(number("absent"), 60);
}

} // namespace
