#include "sandbox/materials/content.h"

#include <gtest/gtest.h>

namespace {

TEST(Digest, GivesThePublishedValues) {
    const std::pair<std::string, const char*> rows[] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "57edf4a22be3c955ac49da2e2107b67a"}};
    for (const auto& [text, digest] : rows) {
        EXPECT_EQ(materials::md5Hex({text.begin(), text.end()}), digest) << text;
    }
}

} // namespace
