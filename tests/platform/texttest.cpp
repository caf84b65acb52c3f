#include "platform/text.h"

#include <gtest/gtest.h>

namespace {

using namespace platform;

struct Row {
    std::string utf8;
    std::wstring wide;
};

/// What stands for a byte sequence that is no UTF-8, and for half a pair of surrogates.
const std::wstring bad = L"\xFFFD";
const std::string badUtf8 = "\xEF\xBF\xBD";

TEST(Text, GoesBothWays) {
    const Row rows[] = {
        {"plain \\ text", L"plain \\ text"},
        {std::string("a\0b", 3), std::wstring(L"a\0b", 3)},
        {"\xC2\x80\xDF\xBF", L"\u0080\u07FF"},
        {"\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xEF\xBF\xBF", L"\u0800\uD7FF\uE000\xFFFF"},
        {"\xF0\x90\x80\x80\xF4\x8F\xBF\xBF", L"\U00010000\U0010FFFF"}};
    for (const auto& [utf8, wide] : rows) {
        EXPECT_EQ(toWide(utf8), wide) << testing::PrintToString(utf8);
        EXPECT_EQ(toUtf8(wide), utf8) << testing::PrintToString(utf8);
    }
}

TEST(Text, BrokenTextIsReplaced) {
    const Row utf8Rows[] = {
        {"a\x80z", L"a" + bad + L"z"}, {"\xFF\xFE", bad + bad}, {"\xC3", bad}, {"\xE2\x82", bad},
        {"\xE2\x82z", bad + L"z"},     {"\xC0\xAF", bad + bad}};
    for (const auto& [utf8, wide] : utf8Rows) {
        EXPECT_EQ(toWide(utf8), wide) << testing::PrintToString(utf8);
    }
    const Row wideRows[] = {{badUtf8 + "a", {wchar_t(0xD800), L'a'}},
                            {badUtf8, {wchar_t(0xDC00)}},
                            {"\xF0\x9F\x98\x80", {wchar_t(0xD83D), wchar_t(0xDE00)}}};
    for (const auto& [utf8, wide] : wideRows) {
        EXPECT_EQ(toUtf8(wide), utf8) << testing::PrintToString(wide);
    }
}

} // namespace
