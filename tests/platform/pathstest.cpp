#include "platform/paths.h"

#include <gtest/gtest.h>

namespace {

TEST(Paths, RemoveFileSpec) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},
        {"a", ""},
        {"a\\", "a"},
        {"a\\b", "a"},
        {"a\\b\\", "a\\b"},
        {"\\", "\\"},
        {"\\a", "\\"},
        {"\\a\\b", "\\a"},
        {"C:", "C:"},
        {"C:a", "C:"},
        {"C:\\", "C:\\"},
        {"C:\\a", "C:\\"},
        {"C:\\a\\", "C:\\a"},
        {"C:\\a\\b.exe", "C:\\a"},
        {"a/b\\c", "a/b"},
        {"\\\\srv\\share", "\\\\srv"},
        {"\\\\srv\\share\\a", "\\\\srv\\share"},
    };
    for (const auto& [path, rest] : rows) {
        EXPECT_EQ(platform::removeFileSpec(path), rest) << path;
    }
}

TEST(Paths, Append) {
    const struct {
        const char* path;
        const char* more;
        const char* joined;
    } rows[] = {
        {"C:\\a", "b", "C:\\a\\b"},
        {"C:\\a\\", "b", "C:\\a\\b"},
        {"C:\\a", "\\b", "C:\\a\\b"},
        {"C:\\a", "b\\", "C:\\a\\b\\"},
        {"C:\\a", "", "C:\\a"},
        {"C:\\", "a", "C:\\a"},
        {"C:", "a", "C:\\a"},
        {"", "a", "a"},
        {"a", "b", "a\\b"},
        {"\\a", "b", "\\a\\b"},
        {"C:\\a", "D:\\b", "D:\\b"},
        {"C:\\a", "\\\\srv\\share\\b", "\\\\srv\\share\\b"},
        {"\\\\srv\\share", "a\\..\\b", "\\\\srv\\share\\b"},
        {"C:\\a", "..\\b", "C:\\b"},
        {"C:\\a\\b", "..", "C:\\a"},
        {"C:\\a", "..", "C:\\"},
        {"C:\\a", "..\\..\\..\\b", "C:\\b"},
        {"\\a", "..\\..\\b", "\\b"},
        {"C:\\a", ".\\b\\.\\c", "C:\\a\\b\\c"},
        {"C:\\a", "b..c", "C:\\a\\b..c"},
        {"a", "..\\b", "\\b"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(platform::appendPath(row.path, row.more), row.joined)
            << row.path << " + " << row.more;
    }
}

TEST(Paths, AppendKeepsTo259Characters) {
    const std::string longest = "C:\\" + std::string(254, 'a');
    EXPECT_EQ(platform::appendPath(longest, "b"), longest + "\\b");
    EXPECT_EQ(platform::appendPath(longest, "bc"), "");
    EXPECT_EQ(platform::appendPath(std::string(300, 'a'), "b"), "");
    EXPECT_EQ(platform::appendPath("C:\\a", std::string(300, 'b')), "");
}

TEST(Paths, IsRelative) {
    const std::pair<const char*, bool> rows[] = {
        {"", true},     {"a", true},    {"a\\b", true},   {"..\\a", true},    {"/a", true},
        {"\\a", false}, {"C:a", false}, {"C:\\a", false}, {"\\\\srv", false},
    };
    for (const auto& [path, isRelative] : rows) {
        EXPECT_EQ(platform::isRelativePath(path), isRelative) << path;
    }
}

TEST(Paths, FileName) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},     {"a", "a"},       {"a\\b.dll", "b.dll"}, {"a/b", "b"},
        {"C:a", "a"}, {"C:\\a", "a"},   {"a\\b\\", "b\\"},     {"a\\", "a\\"},
        {"\\a", "a"}, {"C:\\", "C:\\"}, {"a\\\\b", "b"},
    };
    for (const auto& [path, name] : rows) {
        EXPECT_EQ(platform::fileNameOf(path), name) << path;
    }
}

} // namespace
