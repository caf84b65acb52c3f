#include <gtest/gtest.h>

#include "sandbox/materials/setuppackage.h"

namespace {

using materials::Bytes;

Bytes bytesOf(const std::string& text) {
    return {text.begin(), text.end()};
}

Bytes package() {
    const materials::SetupPayload payload{"1.4.0.1", false, {{"ui\\a.dll", bytesOf("inner")}}};
    return materials::buildPackage(bytesOf("program"), payload, 400, 7);
}

TEST(SetupPackage, ReadsBackWhatWasPackedAndNothingFromAnotherProgram) {
    EXPECT_EQ(package().size(), 400U);
    const auto payload = materials::readPackage(package());
    ASSERT_TRUE(payload && payload->files.size() == 1);
    EXPECT_EQ(payload->version, "1.4.0.1");
    EXPECT_EQ(payload->files[0].path, "ui\\a.dll");
    EXPECT_EQ(payload->files[0].content, bytesOf("inner"));
    EXPECT_FALSE(materials::readPackage(bytesOf("program")));
    EXPECT_THROW(materials::buildPackage({}, *payload, 10, 7), std::runtime_error);
}

TEST(SetupPackage, ADamagedOneIsRefusedWithAReason) {
    const std::size_t digits = 400 - 32; // 16 digits and a mark end it
    const std::pair<std::size_t, const char*> rows[] = {
        {digits, "zz"},               // no number
        {digits, "ffffffffffffffff"}, // longer than the package
        {digits - 20, "}}}}"},        // no JSON
        {digits + 14, "01"},          // cut JSON
    };
    for (const auto& [at, text] : rows) {
        Bytes damaged = package();
        const Bytes patch = bytesOf(text);
        std::copy(patch.begin(), patch.end(), damaged.begin() + static_cast<std::ptrdiff_t>(at));
        EXPECT_THROW(materials::readPackage(damaged), std::exception) << text;
    }
}

} // namespace
