#include "platform/ini.h"

#include "temporaryfolder.h"

#include <gtest/gtest.h>

namespace {

class Ini : public testing::Test {
protected:
    void has(const std::string& text) { file = folder.write("settings.ini", text); }

    std::string text(const char* key, const std::string& other = "other",
                     std::size_t limit = 256) const {
        return platform::profileString(file, "Kelvar", key, other, limit);
    }

    TemporaryFolder folder;
    std::string file = folder.path("settings.ini");
};

TEST_F(Ini, FindsTheText) {
    const struct {
        const char* name;
        const char* file;
        const char* value;
    } rows[] = {
        {"plain", "[Kelvar]\r\nid=a b\r\n", "a b"},
        {"line feeds only", "[Kelvar]\nid=a\n", "a"},
        {"no last line end", "[Kelvar]\nid=a", "a"},
        {"other case", "[kELVAR]\nID=a\n", "a"},
        {"blanks", "  [ Kelvar ]  \n \t id \t = \t a \t\n", "a"},
        {"quotes", "[Kelvar]\nid=\" a \"\n", " a "},
        {"single quotes", "[Kelvar]\nid='a'\n", "a"},
        {"one pair only", "[Kelvar]\nid=\"\"a\"\"\n", "\"a\""},
        {"quotes that do not match", "[Kelvar]\nid=\"a'\n", "\"a'"},
        {"comment", "[Kelvar]\n;id=a\nid=b\n", "b"},
        {"semicolon in a value", "[Kelvar]\nid=a;b\n", "a;b"},
        {"equals sign in a value", "[Kelvar]\nid=a=b\n", "a=b"},
        {"first key counts", "[Kelvar]\nid=a\nid=b\n", "a"},
        {"longer name before it", "[Kelvar]\nids=a\nid=b\n", "b"},
        {"other section", "[x]\nid=a\n[Kelvar]\nid=b\n", "b"},
        {"behind the section", "[Kelvar]\n[x]\nid=a\n", "other"},
        {"before any section", "id=a\n[Kelvar]\n", "other"},
        {"empty value", "[Kelvar]\nid=\n", ""},
        {"empty file", "", "other"},
    };
    for (const auto& row : rows) {
        has(row.file);
        EXPECT_EQ(text("id"), row.value) << row.name;
    }
}

TEST_F(Ini, AnswersTheDefaultWithoutTrailingBlanks) {
    EXPECT_EQ(text("id", " a "), " a");
}

TEST_F(Ini, CutsToTheLimit) {
    has("[Kelvar]\nid=abcdef\n");
    EXPECT_EQ(text("id", "", 4), "abc");
    EXPECT_EQ(text("other", "abcdef", 4), "abc");
    has("[Kelvar]\nid=" + std::string(10000, 'a') + "\n");
    EXPECT_EQ(text("id"), std::string(255, 'a'));
}

TEST_F(Ini, ReadsIntegers) {
    const std::pair<const char*, int> rows[] = {
        {"5", 5},     {"-5", -5},
        {"+5", 5},    {"12ab", 12},
        {"ab", 0},    {"0x1F", 31},
        {"0xg", 0},   {"", 60},
        {"\"7\"", 7}, {"- 5", 0},
        {"010", 10},  {"4294967297", 1},
        {"1.9", 1},   {"2147483647", 2147483647},
    };
    for (const auto& [value, number] : rows) {
        has(std::string("[Kelvar]\ntime=") + value + "\n");
        EXPECT_EQ(platform::profileInt(file, "Kelvar", "time", 60), number) << value;
    }
    EXPECT_EQ(platform::profileInt(file, "Kelvar", "absent", 60), 60);
    EXPECT_EQ(platform::profileInt(folder.path("absent.ini"), "Kelvar", "time", 60), 60);
}

} // namespace
