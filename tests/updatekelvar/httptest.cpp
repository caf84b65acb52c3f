#include <gtest/gtest.h>

#include <optional>

#include "host/hostmodules.h"
#include "support/fakehost.h"
#include "updatekelvar/fetch/kelvarhttp.h"

namespace {

constexpr const char* url = "http://kelvar.test/path";

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
        const char* got;
        const char* logged;
    } rows[] = {
        {{0, 200, std::string("a\0b", 3)}, "a", nullptr},
        {{0, 200, ""}, "", nullptr},
        {{0, 204, ""}, "", "update plugin, kelvar http, response error: 0 ,code: 204 "},
        {{0, 500, "text"}, "", "update plugin, kelvar http, response error: 0 ,code: 500 "},
        {{12, 200, "text"}, "", "update plugin, kelvar http, response error: 12 ,code: 200 "},
        {{-1, 0, ""}, "", "update plugin, kelvar http, response error: -1 ,code: 0 "},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.logged ? row.logged : "success");
        host.onRequest = [&row](const FakeHost::Request&) {
            return row.answer;
        };
        const std::string got = post(url, "x").value_or("no call");
        EXPECT_STREQ(got.c_str(), row.got);
        EXPECT_EQ(got.size(), row.logged ? 0 : row.answer.body.size());
        const FakeHost::LogLine last = host.log().back();
        if (row.logged) {
            EXPECT_EQ(last.text, row.logged);
            EXPECT_EQ(last.level, 4);
            EXPECT_EQ(last.function, "XKelvarHttp::post::<lambda>::operator ()");
        } else {
            EXPECT_EQ(last.level, 2);
        }
    }
}

TEST_F(KelvarHttp, SendsWhatItIsGiven) {
    const std::vector<std::pair<std::string, std::string>> header = {
        {"Content-Type", "application/json"}};
    for (const std::string& body : {std::string(), std::string("{\"a\":\0}", 7)}) {
        host.requests.clear();
        post(url, body);
        ASSERT_EQ(host.requests.size(), 1U);
        EXPECT_EQ(host.requests[0].method, 2);
        EXPECT_EQ(host.requests[0].url, url);
        EXPECT_EQ(host.requests[0].headers, header);
        EXPECT_EQ(host.requests[0].body, body);
    }
    const FakeHost::LogLine line = host.lineWith("request:");
    EXPECT_EQ(line.text, "update plugin, kelvar http, request: http://kelvar.test/path , data:  ");
    EXPECT_EQ(line.function, "XKelvarHttp::post");
    EXPECT_EQ(line.level, 2);
}

TEST_F(KelvarHttp, EmptyAddressFailsAtOnceAndInSilence) {
    EXPECT_EQ(post("", "x"), "");
    EXPECT_TRUE(host.requests.empty());
    EXPECT_TRUE(host.log().empty());
}

TEST_F(KelvarHttp, GoesOnWithoutAHeaderObject) {
    host.without(L"xnbase.dll", "newRequestHeader");
    host.onRequest = [](const FakeHost::Request&) {
        return FakeHost::Answer{0, 200, "b"};
    };
    EXPECT_EQ(post(url, "x"), "b");
    EXPECT_TRUE(host.requests.at(0).headers.empty());
}

TEST_F(KelvarHttp, NeverCallsBackWithoutTheFacilityAndKeepsNothing) {
    for (const char* name : {"asyncHttp", "newRequest", "newRequestHeader"}) {
        host.without(L"xnbase.dll", name);
    }
    auto token = std::make_shared<int>();
    XKelvarHttp().post(url, "", [token](const std::string&) { ADD_FAILURE(); });
    EXPECT_EQ(token.use_count(), 1);
}

TEST_F(KelvarHttp, EmptyAddressBelowRunsTheStepAndSendsAllTheSame) {
    std::vector<int> errors;
    xnhttp::sendRequest(2, "", {}, "",
                        [&](int error, int, const std::string&) { errors.push_back(error); });
    EXPECT_EQ(errors, (std::vector<int>{-1, 0}));
    EXPECT_EQ(host.requests.size(), 1U);
}

TEST_F(KelvarHttp, MakesAddressesFromTheEnvironment) {
    const struct {
        const char* server;
        const char* made;
    } rows[] = {
        {"http://a", "http://a/p"}, {"http://a/", "http://a//p"}, {"", "/p"}, {nullptr, ""}};
    for (const auto& row : rows) {
        host.serverAddress = row.server;
        EXPECT_EQ(XEnvConfigRef().makeUrl("/p"), row.made);
    }
    host.without(L"xnbase.dll", "envConfigInstance");
    EXPECT_EQ(XEnvConfigRef().makeUrl("/p"), "");
}

/// Counts the hooks and its own end.
class Counted final : public XN::RefBaseImpl<Counted> {
public:
    explicit Counted(std::string& notes) : log(notes) {}
    ~Counted() override { log += "~"; }
    void onAddRef() override { log += "+"; }
    void onRelease() override { log += "-"; }
    long addRef() { return addReference(); }
    long release() { return releaseReference(); }

private:
    std::string& log;
};

TEST(RefBase, EndsWithItsLastReference) {
    std::string notes;
    {
        const XN::ScopedRef first(new Counted(notes));
        const XN::ScopedRef second(first.get());
        EXPECT_EQ(notes, "++");
    }
    EXPECT_EQ(notes, "++--~");
}

TEST(RefBase, TaskFunctorRunsItsFunctionAndGoes) {
    FakeHost host;
    auto runs = std::make_shared<int>(0);
    hostmodules::postTask(0, new XN::TaskFunctor([runs] { ++*runs; }));
    EXPECT_EQ(*runs, 1);
    EXPECT_EQ(runs.use_count(), 1);
}

} // namespace
