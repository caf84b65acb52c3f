#include <gtest/gtest.h>

#include <optional>

#include "host/hostmodules.h"
#include "support/fakehost.h"
#include "updatekelvar/fetch/kelvarhttp.h"

namespace {

constexpr const char* url = "http://kelvar.test/path";
constexpr const char* requestLine =
    "update plugin, kelvar http, request: http://kelvar.test/path , data: x ";

class KelvarHttp : public testing::Test {
protected:
    /// What the callback got; nothing when it did not run.
    std::optional<std::string> post(const std::string& address, const std::string& body) {
        std::optional<std::string> got;
        XKelvarHttp().post(address, body, [&got](const std::string& text) {
            EXPECT_FALSE(got) << "called twice";
            got = text;
        });
        return got;
    }

    FakeHost host;
};

TEST_F(KelvarHttp, SuccessIsExactlyNoErrorAndStatus200) {
    const struct {
        FakeHost::Answer answer;
        const char* logged; ///< null for a success
    } rows[] = {
        {{0, 200, std::string("a\0b", 3)}, nullptr},
        {{0, 200, ""}, nullptr},
        {{0, 204, ""}, "update plugin, kelvar http, response error: 0 ,code: 204 "},
        {{12, 200, "text"}, "update plugin, kelvar http, response error: 12 ,code: 200 "},
        {{-1, 0, ""}, "update plugin, kelvar http, response error: -1 ,code: 0 "},
    };
    for (const auto& [answer, logged] : rows) {
        host.answers["path"] = answer;
        EXPECT_EQ(post(url, "x"), logged ? "" : answer.body);
        const FakeHost::LogLine last = host.log().back();
        EXPECT_EQ(last.text, logged ? logged : requestLine);
        EXPECT_EQ(last.level, logged ? 4 : 2);
        EXPECT_EQ(last.function,
                  logged ? "XKelvarHttp::post::<lambda>::operator ()" : "XKelvarHttp::post");
    }
}

TEST_F(KelvarHttp, SendsWhatItIsGiven) {
    const std::string body("{\"a\":\0}", 7);
    post(url, body);
    host.without(L"xnbase.dll", "newRequestHeader");
    EXPECT_EQ(post(url, ""), "");
    ASSERT_EQ(host.requests.size(), 2U);
    EXPECT_EQ(host.requests[0].method, 2);
    EXPECT_EQ(host.requests[0].url, url);
    EXPECT_EQ(host.requests[0].headers, xnhttp::Headers({{"Content-Type", "application/json"}}));
    EXPECT_EQ(host.requests[0].body, body);
    EXPECT_EQ(host.requests[1].body, "");
    EXPECT_TRUE(host.requests[1].headers.empty());
}

TEST_F(KelvarHttp, NeverCallsBackWithoutTheFacilityAndKeepsNothing) {
    host.without(L"xnbase.dll");
    auto token = std::make_shared<int>();
    XKelvarHttp().post(url, "", [token](const std::string&) { ADD_FAILURE(); });
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(KelvarHttp, AnEmptyAddressFailsInSilenceAndBelowIsSentAllTheSame) {
    EXPECT_EQ(post("", "x"), "");
    EXPECT_TRUE(host.requests.empty());
    EXPECT_TRUE(host.log().empty());
    std::vector<int> errors;
    xnhttp::sendRequest(2, "", {}, "",
                        [&](int error, int, const std::string&) { errors.push_back(error); });
    EXPECT_EQ(errors, (std::vector<int>{-1, 0}));
    EXPECT_EQ(host.requests.size(), 1U);
}

TEST_F(KelvarHttp, MakesAddressesFromTheEnvironment) {
    const std::pair<const char*, const char*> rows[] = {
        {"http://a", "http://a/p"}, {"http://a/", "http://a//p"}, {"", "/p"}, {nullptr, ""}};
    for (const auto& [server, made] : rows) {
        host.serverAddress = server;
        EXPECT_EQ(XEnvConfigRef().makeUrl("/p"), made);
    }
    host.without(L"xnbase.dll", "envConfigInstance");
    EXPECT_EQ(XEnvConfigRef().makeUrl("/p"), "");
}

TEST(RefBase, EndsWithItsLastReference) {
    FakeHost host;
    auto runs = std::make_shared<int>(0);
    auto* task = new XN::TaskFunctor([runs] { ++*runs; });
    {
        const XN::ScopedRef held(task);
        hostmodules::postTask(0, task);
        EXPECT_EQ(runs.use_count(), 2);
    }
    EXPECT_EQ(*runs, 1);
    EXPECT_EQ(runs.use_count(), 1);
}

} // namespace
