#include "sandbox/materials/content.h"

#include "platform/digest.h"

#include <gtest/gtest.h>

namespace {

materials::Bytes bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

TEST(Digest, GivesThePublishedValues) {
    const std::pair<std::string, const char*> rows[] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"12345678901234567890123456789012345678901234567890123456789012345678901234567890",
         "57edf4a22be3c955ac49da2e2107b67a"},
    };
    for (const auto& [text, digest] : rows) {
        EXPECT_EQ(materials::md5Hex(bytesOf(text)), digest) << text;
    }
}

TEST(Digest, DoesNotDependOnTheBlocks) {
    const materials::Bytes bytes = materials::randomBytes(5000, 1);
    platform::Md5 whole;
    whole.update(bytes.data(), bytes.size());
    platform::Md5 parts;
    for (std::size_t at = 0; at < bytes.size(); at += 1000) {
        parts.update(bytes.data() + at, 1000);
        parts.update(nullptr, 0);
    }
    EXPECT_EQ(whole.finish(), parts.finish());
}

} // namespace
