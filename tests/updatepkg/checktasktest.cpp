#include "host/httprequest.h"
#include "sandbox/materials/pefile.h"
#include "updatepkg/pkgtest.h"
#include "updatepkg/task/xtaskpkgcheck.h"

namespace {

constexpr const char* offer = R"({"data":{"needUpgrade":true,"info":{"version":"2.0"}}})";

class CheckTaskTest : public PkgTest {
protected:
    CheckTaskTest() {
        host.has("OrvSecurityver.dll", materials::buildPeFile({.version = {1, 0, 0, 1001}}));
        host.answers["check"] = {0, 200, offer};
    }
    std::string automatic() { return run(std::make_shared<XTaskPkgCheck>(true, sender), true); }
    std::string byUser() { return run(std::make_shared<XTaskPkgCheck>(false, sender)); }
};

TEST_F(CheckTaskTest, AsksAsWhoItIsAndRefreshesTheVersionFile) {
    const std::string list = "OrvSecurity\\config\\uninst\\filelist.xml";
    host.homeDirectory = host.clientPath("");
    host.has(list, "<Root><FileList/></Root>");
    EXPECT_EQ(automatic(), "");
    EXPECT_NE(host.bytesOf(list).find(R"("orvsecurityver.dll" Version="1.0.0.1001" MD5=)"),
              std::string::npos);
    const xnhttp::Headers json{{"Content-Type", "application/json"}};
    const auto& [method, url, headers, body] = FakeHost::Request(host.requests.at(0));
    EXPECT_EQ(url, "http://upgrade.test/upgrade/v2/upgrade/check");
    EXPECT_EQ(headers, xnhttp::Headers({{"BrevToken", "token-1"}, json[0]}));
    EXPECT_EQ(body, R"({"bundleId":"com.orvane.tulsar","channelId":"tulsar_upgrade_1.0",)"
                    R"("lang":"zh_CN","phone":"13800000000","platform":"tulsar.pc",)"
                    R"("version":"1.0.0.1001"})");
    host.user.tokenPart.valid = false;
    host.settings.put(settingkeys::language, "e\xff");
    EXPECT_EQ(automatic(), "");
    EXPECT_EQ(host.requests[1].headers, json);
    EXPECT_NE(host.requests[1].body.find("\"lang\":\"e\xef\xbf\xbd\",\"phone\":\"\","), body.npos);
}

TEST_F(CheckTaskTest, GoesOnWithAnOfferThatIsWanted) {
    holds(R"({"version":"3.0"})");
    command(4);
    const std::pair<FakeHost::Answer, bool> rows[] = {
        {{0, 200, offer}, true},
        {{0, 200, R"({"data":{"needUpgrade":true}})"}, true},
        {{0, 200, R"({"data":{"needUpgrade":true,"info":{"version":"0.9"}}})"}, true}, // older
        {{0, 200, R"({"data":{"needUpgrade":true,"info":{"version":"3.0"}}})"}, false},
        {{0, 200, R"({"data":{"needUpgrade":false,"info":{"version":"2.0"}}})"}, false},
        {{0, 204, offer}, false},
        {{12, 200, offer}, false},
    };
    for (const auto& [answer, good] : rows) {
        const auto before = holds(R"({"version":"before"})");
        host.answers["check"] = answer;
        EXPECT_EQ(automatic(), good ? "" : "-") << answer.body;
        const std::string end = byUser();
        EXPECT_EQ(end, "100 " + trace.getData()->toStored() + (good ? "|+" : "|-"));
        EXPECT_EQ(trace.getData() == before, !good) << "what is refused stays in memory";
        EXPECT_EQ(stored(), good ? trace.getData()->toStored() : "");
    }
    EXPECT_EQ(host.lineWith("response, error :  12 , code =  200 ").level, 4);
    host.answers["check"] = {0, 200, R"({"data":)"};
    EXPECT_ANY_THROW(automatic());
}

TEST_F(CheckTaskTest, ConfirmsAnInstallationOnTheUsersRequestOnly) {
    const std::string installed = R"("status":4,"version":"1.0.0.1001")";
    const std::tuple<std::string, bool, bool, bool> rows[] = {
        {installed, true, true, true},
        {installed + R"(,"isUIUpgradeFinished":true)", true, true, false},
        {installed, false, true, false},
        {R"("status":4,"version":"1.0.0.1001.0")", true, false, true},
        {R"("status":3,"version":"1.0.0.1001")", true, false, true},
    };
    for (const auto& [members, logined, confirmed, told] : rows) {
        const auto data = holds("{" + members + "}");
        host.user.devicePart.valid = logined;
        host.requests.clear();
        const std::string end = byUser();
        EXPECT_EQ(end, (told ? "100 " + stored() + "|" : "") + (confirmed ? "-" : "+"));
        EXPECT_EQ(stored(), told ? trace.getData()->toStored() : "") << members;
        EXPECT_EQ(data->getStatus() == 5, confirmed);
        EXPECT_EQ(host.requests.empty(), confirmed);
    }
    holds("{" + installed + "}");
    EXPECT_EQ(automatic(), "");
}

TEST_F(CheckTaskTest, AnEmptyAddressEndsTwiceTheSecondTimeWhenTheTaskIsGone) {
    static xnhttp::Callback* held;
    const auto hold = +[](int, const char*, void*, xnhttp::Callback* callback) {
        callback->addRef();
        held = callback;
    };
    trace.clearData(); // brings the settings' module, which nothing loads any more then
    fake::addModule(L"xnbase.dll", {{"asyncHttp", reinterpret_cast<void*>(hold)}},
                    fake::Presence::loaded);
    for (const bool isAuto : {true, false}) {
        std::string ends;
        auto task = std::make_shared<XTaskPkgCheck>(isAuto, sender);
        task->setNext(isAuto ? std::make_shared<XTaskBase>() : nullptr);
        task->check([&](bool succ) {
            ends += events() + (succ ? "+" : "-");
            task.reset();
        });
        held->onResponse(nullptr);
        held->release();
        EXPECT_EQ(ends + events(), isAuto ? "--" : "100|-100|-");
    }
}

} // namespace
