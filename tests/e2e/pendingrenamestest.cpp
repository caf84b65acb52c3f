#include <gtest/gtest.h>
#include <ostream>

#include "sandbox/platform/pendingrenames.h"

// The registry's list of delayed moves: what is read out of each form of it.

namespace {

using namespace std::string_literals;

struct Case {
    const char* name;
    std::string value;
    const char* read; ///< "from > to; " a request, "! " and the fault behind them
};

void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.name;
}

class PendingRenames : public testing::TestWithParam<Case> {};

TEST_P(PendingRenames, AreRead) {
    std::string read;
    const sandbox::PendingList list = sandbox::readPendingRenames(GetParam().value, "D:\\client");
    for (const sandbox::PendingMove& move : list.moves) {
        read += move.from + " > " + move.to + "; ";
    }
    for (const std::string& fault : list.faults) {
        read += "! " + fault;
    }
    EXPECT_EQ(read, GetParam().read);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, PendingRenames,
    testing::Values(
        Case{"None", "", ""}, Case{"OnlyItsEnd", "\0"s, ""},
        Case{"MoveAndDelete",
             R"(\??\D:\client\a)"s + '\0' + R"(!\??\D:\client\b)" + '\0' + R"(\??\D:\client\c)" +
                 "\0\0\0"s,
             R"(D:\client\a > D:\client\b; D:\client\c > ; )"},
        Case{"LookedAtBefore",
             R"(*1\??\d:\CLIENT\a)"s + '\0' + R"(!*2\??\D:\client\b)" + '\0' +
                 R"(*2\??\D:\client\c)" + '\0' + R"(!*1\??\D:\client\d)" + '\0' +
                 R"(*2\??\D:\client\e)" + "\0\0\0"s,
             R"(d:\CLIENT\a > D:\client\b; D:\client\c > D:\client\d; D:\client\e > ; )"},
        Case{"OfOthers",
             R"(\??\D:\client2\a)"s + "\0\0"s + R"(\??\D:\client)" + "\0\0"s + R"(\??\C:\a)" +
                 "\0\0\0"s,
             ""},
        Case{"CutShort", R"(\??\D:\client\a)"s + "\0\0"s + R"(\??\D:\cli)",
             R"(D:\client\a > ; ! the last request has no target: \??\D:\cli)"},
        Case{"NoFile", "\0"s + R"(!\??\D:\client\b)" + '\0' + R"(\??\D:\client\c)" + "\0\0\0"s,
             R"(D:\client\c > ; ! request 1 names no file)"}),
    [](const auto& tested) { return tested.param.name; });

} // namespace
