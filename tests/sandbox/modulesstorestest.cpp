#include <atomic>
#include <gtest/gtest.h>
#include <thread>

#include "host/ikeyvaluestore.h"
#include "moduleslab.h"
#include "sandbox/common/jsonfile.h"

namespace {

IKeyValueStore& settings() {
    return *lab::bind<IKeyValueStore* (*)()>(L"XNSetting.dll", "GetKV")();
}

TEST(ModuleSettings, EveryWriteReplacesTheWholeFileAndLosesNoOther) {
    const auto file = sandbox::processFolders().settings();
    std::atomic<bool> finished{false};
    int damaged = 0;
    std::uint64_t written = 0;
    std::thread other([&] { // as another process does
        while (!finished) {
            damaged += sandbox::readJson(file) ? 0 : 1;
            damaged += sandbox::updateJson(
                           file, [&](nlohmann::json& stored) { stored["others"] = ++written; })
                           ? 0
                           : 1;
        }
    });
    for (std::uint64_t i = 0; i < 50; ++i) {
        ASSERT_TRUE(settings().setString("long", std::string(i * 1000, 'x').c_str()));
        ASSERT_TRUE(settings().setUInt64("count", i));
    }
    finished = true;
    other.join();
    EXPECT_EQ(damaged, 0);
    std::uint64_t seen = 0;
    EXPECT_TRUE(settings().getUInt64("others", &seen));
    EXPECT_EQ(seen, written);
    EXPECT_EQ(sandbox::readJson(file)->at("count"), 49);
    EXPECT_EQ(sandbox::readJson(file)->at("text"), "value");
}

TEST(ModuleSettings, AFailedWriteChangesNothing) {
    const auto file = sandbox::processFolders().settings();
    EXPECT_FALSE(settings().setString("text", "\xff no UTF-8"));
    std::filesystem::create_directory(file.string() + ".new");
    const lab::Events events;
    EXPECT_FALSE(settings().setString("text", "other"));
    std::filesystem::remove(file.string() + ".new");
    char buffer[8] = {};
    std::uint32_t size = sizeof buffer;
    EXPECT_TRUE(settings().getString("text", buffer, &size));
    EXPECT_STREQ(buffer, "value");
    EXPECT_TRUE(events.of("setting").empty());
}

TEST(ModuleSettings, ADamagedFileIsNotReplaced) {
    const auto file = sandbox::processFolders().settings();
    const auto right = sandbox::readFile(file);
    ASSERT_TRUE(right);
    for (const char* damaged : {"", "{\"a\":", "[1]"}) {
        ASSERT_TRUE(sandbox::replaceFile(file, damaged, sandbox::Durability::replaced));
        EXPECT_FALSE(settings().setString("text", "other")) << damaged;
        EXPECT_EQ(sandbox::readFile(file), damaged);
    }
    ASSERT_TRUE(sandbox::replaceFile(file, *right, sandbox::Durability::replaced));
}

} // namespace
