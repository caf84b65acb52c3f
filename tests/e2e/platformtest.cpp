#include <curl/curl.h>
#include <gtest/gtest.h>
#include <ostream>
#include <thread>

#include "sandbox/server/gate.h"
#include "sandbox/server/updateplatform.h"
#include "sandbox/server/upgradeserver.h"

// The platform's own judgement: a client that deviates is told so.

namespace {

constexpr const char* upgradePath = "/PacketV2/GetUpgradePacket";
constexpr const char* diffPath = "/PacketV2/GetFullPacketDiff";
constexpr const char* metasPath = "/MaterialV2/BatchGetMaterialMeta";
constexpr const char* packagePath = "/upgrade/v2/upgrade/check";
constexpr const char* filePath = "/upgrade/v1/file/check";
constexpr const char* token = "BrevToken: t-1";
constexpr const char* upgradeBody =
    R"({"channel_code":"tulsar_upgrade_1.0","channel_unique_code":"","customer":{"asset_id":{"id":-1,"oid":-1},"client":""},"need_min_ver":false,"params":null,"species_unique_code":"","version":"1.0.0.1001"})"
    "\n";

struct Asked {
    std::string path = upgradePath;
    std::string body = upgradeBody;
    const char* header = nullptr; ///< beside the type
    const char* method = "POST";
};

struct Case {
    const char* name;
    std::vector<Asked> asked;
    const char* complaint; ///< the first one; empty for none
};

void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.name;
}

class Platform : public testing::TestWithParam<Case> {
protected:
    void SetUp() override {
        platform.start();
        sandbox::ExpectedRun run;
        run.channel = "tulsar_upgrade_1.0";
        run.version = "1.0.0.1001";
        run.questions = {GetParam().asked.size()};
        if (GetParam().asked.front().path.rfind("/upgrade/", 0) == 0) {
            run.questions = {0};
        }
        sandbox::UpgradeOffer upgrade;
        upgrade.package.emplace().version = "1.4.0.1";
        sandbox::ExpectedUpgrade expected;
        expected.channel = "c";
        expected.language = "zh_CN";
        expected.token = expected.packageToken = "t-1";
        expected.osVersion = "10.0.19045.0";
        expected.versions = {"1.2.0.1500", "1.4.0.1"};
        expected.files = {{1000, "0.0.0.0"}};
        platform.beginRun({"tulsar", "c", "2.0.0.1", "", {}, {}}, run, upgrade, expected);
    }

    void ask(const Asked& asked) {
        CURL* curl = curl_easy_init();
        curl_slist* headers = curl_slist_append(nullptr, "Content-Type: application/json");
        headers = asked.header == nullptr ? headers : curl_slist_append(headers, asked.header);
        const std::string url = platform.address() + asked.path;
        curl_easy_setopt(curl, CURLOPT_URL, url.c_str());
        curl_easy_setopt(curl, CURLOPT_HTTPHEADER, headers);
        curl_easy_setopt(curl, CURLOPT_CUSTOMREQUEST, asked.method);
        curl_easy_setopt(curl, CURLOPT_POSTFIELDSIZE, static_cast<long>(asked.body.size()));
        curl_easy_setopt(curl, CURLOPT_POSTFIELDS, asked.body.c_str());
        curl_easy_setopt(curl, CURLOPT_WRITEFUNCTION, &dropBody);
        EXPECT_EQ(curl_easy_perform(curl), CURLE_OK);
        curl_slist_free_all(headers);
        curl_easy_cleanup(curl);
    }

    static std::size_t dropBody(char*, std::size_t size, std::size_t count, void*) {
        return size * count;
    }

    sandbox::UpdatePlatform platform{testing::TempDir(), nullptr};
};

const Asked right{};
const Asked rightDiff{
    diffPath,
    R"({"channel_id":"tulsar_upgrade_1.0","start_ver":"1.0.0.1001","target_ver":"2.0.0.1"})"
    "\n",
    nullptr};

const std::string packageBody =
    R"({"bundleId":"com.orvane.tulsar","channelId":"c","lang":"zh_CN","phone":"","platform":"tulsar.pc","version":"1.2.0.1500"})";
const std::string updatedBody =
    std::string(packageBody).replace(packageBody.find("1.2"), 10, "1.4.0.1");
const std::string fileBody =
    R"({"bundleId":"com.orvane.tulsar","info":[{"fileType":1000,"fileVersion":"0.0.0.0"}],"osName":"windows","osVersion":"10.0.19045.0","phone":""})";

TEST_P(Platform, ComplainsAboutWhatDiffers) {
    for (const Asked& asked : GetParam().asked) {
        ask(asked);
    }
    const auto complaints = platform.endRun().complaints;
    const std::string first = complaints.empty() ? "" : complaints.front();
    EXPECT_NE(first.find(GetParam().complaint), std::string::npos) << first;
    EXPECT_EQ(complaints.empty(), *GetParam().complaint == '\0') << first;
}

INSTANTIATE_TEST_SUITE_P(
    Cases, Platform,
    testing::Values(Case{"Right", {right, rightDiff}, ""},
                    Case{"NoNewline",
                         {{upgradePath, std::string(upgradeBody).substr(0, 199), nullptr}},
                         "body differs at byte"},
                    Case{"OtherVersion",
                         {{diffPath, rightDiff.body, nullptr}},
                         "out of order, expected GetUpgradePacket"},
                    Case{"Repeated", {right, right}, "out of order, expected GetFullPacketDiff"},
                    Case{"SkipsAStep", {right, {metasPath, "null\n", nullptr}}, "out of order"},
                    Case{"SurplusHeader",
                         {{upgradePath, upgradeBody, "BrevToken: x"}},
                         "beside it BrevToken: x"},
                    Case{"Parameter",
                         {{"/PacketV2/GetUpgradePacket?a=1", upgradeBody, nullptr}},
                         "POST /PacketV2/GetUpgradePacket?a=1: nothing is there"},
                    Case{"OtherMethod",
                         {{upgradePath, upgradeBody, nullptr, "PUT"}},
                         "PUT /PacketV2/GetUpgradePacket: nothing is there"},
                    Case{"NoFile",
                         {{"/storage/none", "", nullptr, "GET"}},
                         "GET /storage/none: nothing is there"},
                    Case{"Upgrade",
                         {{packagePath, packageBody, token},
                          {packagePath, updatedBody, token},
                          {filePath, fileBody, token}},
                         ""},
                    Case{"UpgradeToken",
                         {{packagePath, packageBody}},
                         "package check: headers: expected exactly one \"BrevToken: t-1\", got 0"},
                    Case{"UpgradeOtherToken",
                         {{filePath, fileBody, "BrevToken: t-2"}},
                         "beside it BrevToken: t-2"},
                    Case{"UpgradeBody",
                         {{filePath, packageBody, token}},
                         "file check: body differs at byte 33"},
                    Case{"UpgradeWentBack",
                         {{packagePath, updatedBody, token}, {packagePath, packageBody, token}},
                         "package check: body differs"},
                    Case{"OtherPath",
                         {{"/PacketV2/Other", "", nullptr}},
                         "POST /PacketV2/Other: nothing is there"}),
    [](const auto& tested) { return tested.param.name; });

TEST(PlatformWithoutClient, ComplainsAboutEveryQuestionThatNeverCame) {
    sandbox::UpdatePlatform platform(testing::TempDir(), nullptr);
    platform.start();
    platform.beginRun({}, {});
    EXPECT_EQ(platform.endRun().complaints.size(), 5U);
}

TEST(UpgradeServer, KnowsTheVersionOfABodyThatIsOtherwiseWrong) {
    std::vector<std::string> complaints;
    sandbox::UpgradeServer server([&](const std::string& text) { complaints.push_back(text); });
    sandbox::UpgradeOffer offer;
    offer.package.emplace().version = "1.4.0.1";
    sandbox::ExpectedUpgrade expected;
    expected.versions = {"1.2.0.1500", "1.4.0.1"};
    server.beginRun(offer, expected);
    std::string words;
    server.checkPackage({{"Content-Type", "application/json"}}, updatedBody, "", words);
    EXPECT_EQ(words, "1.4.0.1, nothing newer");
    EXPECT_EQ(complaints.size(), 1U);
}

TEST(Gate, LetsThroughWhoCameBeforeItWasOpenedAndShutAgain) {
    sandbox::Gate gate;
    const auto late = gate.ticket();
    std::thread waits([&gate, ticket = gate.ticket()] { gate.pass(ticket); });
    while (!gate.isHeld()) {
        std::this_thread::yield();
    }
    gate.open();
    gate.shut();
    EXPECT_FALSE(gate.isHeld());
    waits.join();
    gate.pass(late);
}

} // namespace
