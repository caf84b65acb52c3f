#include <gtest/gtest.h>

#include <functional>

#include "host/log.h"
#include "support/fakehost.h"

namespace {

struct Speaker {
    template <class T>
    void generic(T /*value*/) {
        XLOG(logProgress, "generic");
    }
    std::function<void()> step() const {
        return [] {
            XLOG(logProgress, "in a lambda");
        };
    }
    static std::shared_ptr<std::string> nested(const std::function<void(bool)>& /*unused*/) {
        const auto outer = [](int) {
            const auto inner = [](const std::string&) {
                XLOG(logFault, "nested");
            };
            inner("");
        };
        outer(1);
        return nullptr;
    }
    bool operator()(int /*value*/) {
        XLOG(logProgress, "called");
        return true;
    }
    ~Speaker() { XLOG(logProgress, "gone"); }
};

TEST(LogTest, NamesTheFunctionByItsQualifiedName) {
    FakeHost host;
    {
        Speaker speaker;
        speaker.generic(std::string());
        speaker.step()();
        Speaker::nested({});
        speaker(1);
    }
    const std::pair<const char*, const char*> rows[] = {
        {"generic", "Speaker::generic"},
        {"in a lambda", "Speaker::step::<lambda>::operator ()"},
        {"nested", "Speaker::nested::<lambda>::operator ()::<lambda>::operator ()"},
        {"called", "Speaker::operator()"},
        {"gone", "Speaker::~Speaker"},
    };
    for (const auto& [text, name] : rows) {
        const std::string function = host.lineWith(text).function;
        EXPECT_EQ(function.substr(function.find("Speaker")), name);
    }
}

TEST(LogTest, ReadsTheSpellingsOfTheCompilers) {
    const std::pair<const char*, const char*> rows[] = {
        {"XTaskQueue::addTask", "XTaskQueue::addTask"},
        {"int XTaskQueue::addTask(std::shared_ptr<IXTaskBase>)", "XTaskQueue::addTask"},
        {"std::map<std::string, std::vector<int> > utils::f(const char*)", "utils::f"},
        {"XKelvarHttp::post(const string&) const::<lambda(int, std::function<void(bool)>)>",
         "XKelvarHttp::post::<lambda>::operator ()"},
        {"auto XKelvarHttp::post(const std::string &)::(anonymous class)::operator()(int) const",
         "XKelvarHttp::post::<lambda>::operator ()"},
        {"void {anonymous}::helper()", "{anonymous}::helper"},
        {"void (anonymous namespace)::helper(int)", "(anonymous namespace)::helper"},
        {"void A::t(T) [with T = std::function<void(int)>]", "A::t"},
        {"void A::t(T) [T = int]", "A::t"},
        {"auto __cdecl A::f::<lambda_12>::operator ()(int) const", "A::f::<lambda>::operator ()"},
        {"", ""},
    };
    for (const auto& [signature, name] : rows) {
        EXPECT_EQ(qualifiedName(signature), name) << signature;
    }
}

TEST(LogTest, FollowsEachPieceWithOneBlankAndFeedsBothSinks) {
    FakeHost host;
    XLOG(logProgress, "alone");
    XLOG(logFault, "text:", std::string("a"), "b", -5, 7U, std::uint64_t{1} << 40, true, false);
    const auto lines = host.log();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[0].text, "alone ");
    EXPECT_EQ(lines[0].level, 2);
    EXPECT_EQ(lines[1].text, "text: a b -5 7 1099511627776 1 0 ");
    EXPECT_EQ(lines[1].level, 4);
    EXPECT_EQ(lines[1].file, "tests/host/logtest.cpp");
    EXPECT_EQ(lines[1].line, lines[0].line + 1);
    EXPECT_EQ(fake::debugLines(), (std::vector<std::string>{lines[0].text, lines[1].text}));
}

TEST(LogTest, WithoutTheBaseModuleOnlyTheDebugOutputRemains) {
    FakeHost host;
    host.without(L"xnbase.dll");
    XLOG(logProgress, "unheard");
    EXPECT_EQ(fake::debugLines(), std::vector<std::string>{"unheard "});
    EXPECT_TRUE(host.log().empty());
}

} // namespace
