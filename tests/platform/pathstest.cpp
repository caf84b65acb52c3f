#include "platform/paths.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;

TEST(Paths, RemoveFileSpec) {
    const char* const rows[][2] = {{"", ""},
                                   {"a", ""},
                                   {"a\\", "a"},
                                   {"a\\b", "a"},

                                   {"\\", "\\"},
                                   {"\\a", "\\"},

                                   {"C:", "C:"},
                                   {"C:a", "C:"},
                                   {"C:\\", "C:\\"},
                                   {"C:\\a", "C:\\"},

                                   {"C:\\a\\b.exe", "C:\\a"},
                                   {"a/b\\c", "a/b"},
                                   {"\\\\srv\\share", "\\\\srv"},
                                   {"\\\\srv\\share\\a", "\\\\srv\\share"}};
    for (const auto& [path, rest] : rows) {
        EXPECT_EQ(removeFileSpec(path), rest) << path;
    }
}

TEST(Paths, Append) {
    const char* const rows[][3] = {{"C:\\a", "b", "C:\\a\\b"},
                                   {"C:\\a\\", "b", "C:\\a\\b"},
                                   {"C:\\a", "\\b", "C:\\a\\b"},
                                   {"C:\\a", "b\\", "C:\\a\\b\\"},
                                   {"C:\\a", "", "C:\\a"},

                                   {"C:", "a", "C:\\a"},
                                   {"", "a", "a"},

                                   {"C:\\a", "D:\\b", "D:\\b"},
                                   {"C:\\a", "\\\\srv\\share\\b", "\\\\srv\\share\\b"},
                                   {"\\\\srv\\share", "a\\..\\b", "\\\\srv\\share\\b"},
                                   {"C:\\a", "..\\b", "C:\\b"},

                                   {"C:\\a", "..", "C:\\"},
                                   {"C:\\a", "..\\..\\..\\b", "C:\\b"},
                                   {"\\a", "..\\..\\b", "\\b"},
                                   {"C:\\a", ".\\b\\.\\c", "C:\\a\\b\\c"},
                                   {"C:\\a", "b..c", "C:\\a\\b..c"},
                                   {"a", "..\\b", "\\b"}};
    for (const auto& [path, more, joined] : rows) {
        EXPECT_EQ(appendPath(path, more), joined) << path << " + " << more;
    }
    const std::string longest = "C:\\" + std::string(254, 'a');
    EXPECT_EQ(appendPath(longest, "b"), longest + "\\b");
    EXPECT_EQ(appendPath(longest, "bc"), "");
    EXPECT_EQ(appendPath(std::string(300, 'a'), "b"), "");
    EXPECT_EQ(appendPath("C:\\a", std::string(300, 'b')), "");
}

TEST(Paths, IsRelative) {
    for (const char* path : {"", "a", "a\\b", "..\\a", "/a"}) {
        EXPECT_TRUE(isRelativePath(path)) << path;
    }
    for (const char* path : {"\\a", "C:a", "C:\\a", "\\\\srv"}) {
        EXPECT_FALSE(isRelativePath(path)) << path;
    }
}

TEST(Paths, FileName) {
    const std::pair<const char*, const char*> rows[] = {
        {"", ""},     {"a", "a"},       {"a\\b.dll", "b.dll"}, {"a/b", "b"},
        {"C:a", "a"}, {"C:\\a", "a"},   {"a\\b\\", "b\\"},     {"a\\", "a\\"},
        {"\\a", "a"}, {"C:\\", "C:\\"}, {"a\\\\b", "b"},
    };
    for (const auto& [path, name] : rows) {
        EXPECT_EQ(fileNameOf(path), name) << path;
    }
}

} // namespace
