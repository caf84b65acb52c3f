#include <gtest/gtest.h>

#include "support/fakehost.h"
#include "updatekelvar/data/materialcheck.h"

namespace {

/// An expression, the client's version, and whether that passes.
const std::tuple<std::string, const char*, bool> expressions[] = {
    {R"(%appver%>="1.0")", "0.9", false},
    {R"(%appver%>="1.0")", "1.0", true},
    {R"(%appver%>"1.0")", "1.0", false},
    {R"(%appver%>"1.0")", "1.0.0", true}, // more parts are greater
    {R"(%appver%<="1.0")", "1.0", true},
    {R"(%appver%<="1.0")", "1.0.0", false},
    {R"(%appver%<="1.0")", "0.9", true},
    {R"(%appver%=="1.0")", "0.9", false},
    {R"(%appver%=="1.0")", "1.0", true},
    {R"(%appver%=="1.0")", "1.0.0", false},
    {R"(%appver%>="1.0.0.1"&&%appver%<"2.0.0.0")", "1.5.0.0", true},
    {R"(%appver%>="1.0.0.1"&&%appver%<"2.0.0.0")", "2.0.0.0", false},
    // the last clause of a side counts, and "==" is of the high side
    {R"(%appver%=="1.0"&&%appver%<"2.0")", "1.5", true},
    {R"(%appver%>="3.0"&&%appver%>"1.0")", "2.0", true},
    // clauses that cannot be read are passed over
    {R"(%appver% >= "9.0")", "1.0", true},
    {R"(%appver%!="1.0")", "1.0", true},
    {R"(%sysver%>="99.0")", "1.0", true},
    {R"(%appver%>="9.0)", "1.0", true},
    {R"(%appver%>=9.0)", "1.0", true},
    {R"(">="%appver%"9.0")", "1.0", true},
    {R"(%appver%>="9.0&&%appver%<"2.0")", "1.0", true},
    {R"(%appver%>="9.0&&%appver%<"2.0")", "3.0", false},
    {R"(&&%appver%<"2.0"&&)", "3.0", false},
    {R"(%appver%>"0.1"&&%appver%>="9.0&&%appver%<"2.0")", "1.0", true},
    {R"(%osver%>="9.0")", "1.0", true},
    // what stands behind a version is passed over, and an empty version takes the bound away
    {R"(%appver%=="1.0".5)", "1.0", true},
    {R"(%appver%<"2.0"&&%appver%<"")", "3.0", true},
    // a version that is not there reads as one part of value 0
    {R"(%appver%>="0")", "", true},
    {R"(%appver%>="0.0")", "", false},
    {R"(%appver%>="")", "", true},
};

TEST(MaterialCheck, BoundsOnTheClientsVersion) {
    FakeHost host;
    for (const auto& [expression, version, passes] : expressions) {
        XMaterialAppVerCheck check;
        EXPECT_EQ(check.parse(expression), 0);
        host.versions.entries["OrvSecurityver.dll"] = version; // asked for at each check
        EXPECT_EQ(check.check(), passes) << expression << " on " << version;
    }
}

TEST(MaterialCheck, BoundsOnTheSystemsVersion) {
    FakeHost host;
    XMaterialSysVerCheck check;
    EXPECT_EQ(check.parse(""), -1);
    EXPECT_TRUE(check.check());
    EXPECT_EQ(check.parse(R"(%sysver%>="10.0.19045"&&%sysver%=="10.0.19045"&&%appver%<"1.0")"), 0);
    EXPECT_TRUE(check.check()); // three parts, and the other variable is not its own
    host.osVersion.build = 19044;
    EXPECT_FALSE(check.check());
    host.withoutId(L"module.base");
    EXPECT_FALSE(check.check());
}

} // namespace
