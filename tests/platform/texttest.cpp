#include "platform/text.h"

#include <gtest/gtest.h>

namespace {

/// What stands for a byte sequence that is no UTF-8.
const std::wstring bad = L"\xFFFD";

TEST(Text, ReadsUtf8) {
    const struct {
        std::string utf8;
        std::wstring wide;
    } rows[] = {
        {"", L""},
        {"plain \\ text", L"plain \\ text"},
        {std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
        {"\xC2\x80\xDF\xBF", L"\u0080\u07FF"},
        {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", L"\u0800\uD7FF\uE000\xFFFF"},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", L"\U00010000\U0010FFFF"},
        {"a\x80z", L"a" + bad + L"z"},
        {"\xFF\xFE", bad + bad},
        {"\xC3", bad},
        {"\xE2\x82", bad},
        {"\xE2\x82z", bad + L"z"},
        {"\xC0\xAF", bad + bad},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(platform::toWide(row.utf8), row.wide) << testing::PrintToString(row.utf8);
    }
}

TEST(Text, WritesUtf8) {
    const struct {
        std::wstring wide;
        std::string utf8;
    } rows[] = {
        {L"", ""},
        {std::wstring(L"a\0b", 3), std::string("a\0b", 3)},
        {L"\u0080\u07FF\u0800\uFFFD", "\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBD"},
        {L"\U00010000\U0010FFFF", "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        {std::wstring(1, wchar_t(0xD800)) + L"a", "\xEF\xBF\xBD"
                                                  "a"},
        {std::wstring(1, wchar_t(0xDC00)), "\xEF\xBF\xBD"},
        {{wchar_t(0xD83D), wchar_t(0xDE00)}, "\xF0\x9F\x98\x80"},
    };
    for (const auto& row : rows) {
        EXPECT_EQ(platform::toUtf8(row.wide), row.utf8) << testing::PrintToString(row.wide);
    }
}

} // namespace
