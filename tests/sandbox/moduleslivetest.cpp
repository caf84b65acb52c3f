#include <functional>
#include <gtest/gtest.h>
#include <thread>
#include <vector>

#include "host/notificationcenter.h"
#include "host/usercenter.h"
#include "moduleslab.h"
#include "sandbox/common/jsonfile.h"
#include "sandbox/modules/xnbase/listener.h"
#include "sandbox/platform/filewrites.h"

// What another process does to the client reaches the modules while they run.

namespace {

void change(const std::function<void(nlohmann::json&)>& change) {
    ASSERT_TRUE(sandbox::updateJson(sandbox::processFolders().config(), change));
}

/// Polls the module as the host does, and waits until it has delivered what came of it.
void poll(const wchar_t* module) {
    lab::bind<sandbox::Poll>(module, "sandboxPoll")();
    const auto idle = lab::bind<sandbox::Idle>(module, "sandboxIdle");
    while (!idle()) {
        std::this_thread::yield();
    }
}

TEST(LiveModules, CommandsArriveOnceAndInTheirOrder) {
    struct Receiver final : NC::Observer {
        void onNotification(NC::INotification* notification) override {
            codes.push_back(*static_cast<const std::int32_t*>(notification->data()));
        }
        std::vector<std::int32_t> codes;
    };
    static Receiver receiver; // registered for good
    lab::bind<NC::INotificationCenter* (*)()>(L"XNSetting.dll", "GetNotificationCenter")()
        ->registerObserver(&receiver);
    const lab::Events events;
    sandbox::appendToFile(sandbox::processFolders().commands(),
                          "{\"code\":2}\n{\"code\":\"x\"}\n{\"code\":1e300}\n{\"code\":5}\n");
    poll(L"XNSetting.dll");
    poll(L"XNSetting.dll");
    EXPECT_EQ(receiver.codes, (std::vector<std::int32_t>{2, 5}));
    ASSERT_EQ(events.of("notification").size(), 2U);
    EXPECT_EQ(events.of("notification")[1]["size"], 1028);
    EXPECT_EQ(events.of("failure").size(), 2U) << "the damaged lines";
}

TEST(LiveModules, AChangedLoginIsToldAndTextsHandedOutStay) {
    struct Observer final : uc::UserStateObserverBase {
        void event2(void* /*argument*/) override { ++changes; }
        int changes = 0;
    };
    static Observer observer; // registered for good
    auto* center = lab::bind<uc::IUserCenter* (*)()>(L"xnuser.dll", "GetUserCenter")();
    center->stateSource()->registerObserver(&observer);
    uc::IUserState* const device = center->deviceState();
    const char* const before = device->identity();
    change([](nlohmann::json& config) {
        config["login"].merge_patch({{"device", false}, {"identity", "7-8-z"}});
    });
    poll(L"xnuser.dll");
    poll(L"xnuser.dll");
    EXPECT_EQ(observer.changes, 1);
    EXPECT_FALSE(device->isValid());
    EXPECT_TRUE(center->tokenState()->isValid());
    EXPECT_STREQ(device->identity(), "7-8-z");
    EXPECT_STREQ(before, "1001-2002-x");
}

TEST(LiveModules, MuteModeIsReadAtEachCall) {
    const auto isMute = lab::bind<int (*)()>(L"xnquiet.dll", "IsMuteMode");
    EXPECT_EQ(isMute(), 0);
    change([](nlohmann::json& config) { config["muteMode"] = 1; });
    EXPECT_EQ(isMute(), 1);
    change([](nlohmann::json& config) { config["muteMode"] = 0; });
    EXPECT_EQ(isMute(), 0);
}

} // namespace
