#include <gtest/gtest.h>
#include <stdexcept>

#include "soak/facts.h"
#include "soak/tally.h"

// What a soak counts as kept by design, and the counts that it does not believe.

namespace soak {
namespace {

constexpr const char* asked = "update plugin, pkg, task check, request:{} ";
constexpr const char* answered = "update plugin, pkg, task check, succ: 0 ";
constexpr const char* retry = "update plugin, file, retry. ";
constexpr const char* helper = "update plugin, other, task run, check. ";

struct Seen {
    const char* name;
    std::vector<const char*> lines;
    std::size_t spoiled; ///< answers to package checks
    std::size_t chains;
    std::size_t retries = 0;
};

TEST(TallyTest, KeepsWhatNeverEndsAndNoMore) {
    const Seen table[] = {
        {"an answered check", {asked, answered}, 1, 0},
        {"a refused one",
         {asked, "update plugin, pkg, task check, response, error : 7 ", answered},
         1,
         0},
        {"a lost one", {asked, answered, asked}, 1, 1},
        {"one that is no JSON", {asked, "update plugin, pkg, task check, response:<html> "}, 1, 1},
        {"three of a sound server that never end", {asked, asked, asked}, 0, 0},
        {"three behind one lost answer", {asked, asked, asked}, 1, 1},
        {"more answers than checks", {asked, answered, answered}, 1, 0},
        {"the helper", {helper}, 0, 1},
        {"the helper again and again", {helper, helper, helper}, 0, 1},
        {"an install in mute mode", {"XTaskPkgInstall check isMugeMode return "}, 0, 1},
        {"the file channel's retry", {retry}, 0, 0, 1},
        {"one more than its attempts leave room for", {retry, retry, retry}, 0, 0, 2},
    };
    for (const Seen& seen : table) {
        Tally tally;
        for (const char* line : seen.lines) {
            tally.see({{"kind", "log"}, {"text", line}, {"t", 1000}});
        }
        EXPECT_EQ(tally.kept(1000, seen.spoiled).chains, seen.chains) << seen.name;
        EXPECT_EQ(tally.kept(300'000, seen.spoiled).retries, seen.retries) << seen.name;
        EXPECT_EQ(tally.kept(302'000, seen.spoiled).retries, 0U) << seen.name;
    }
}

TEST(TallyTest, TakesNoLookThatTheSystemDoesNotTell) {
    Tally tally;
    const auto bytesBehind = [&](int allocated) {
        tally.see({{"kind", "host"}, {"n", 20}, {"allocated", allocated}});
        return tally.heap() ? tally.heap()->bytes : -1;
    };
    EXPECT_EQ(bytesBehind(0), -1);
    EXPECT_EQ(bytesBehind(500), 500);
    EXPECT_EQ(bytesBehind(0), 500);
}

TEST(FactsTest, HandlesAreThoseOfACounterThatWorked) {
    EXPECT_EQ(toldHandles(0, "99\n"), 99);
    EXPECT_THROW(toldHandles(0, "0\n"), std::runtime_error);
    EXPECT_THROW(toldHandles(1, "99\n"), std::runtime_error);
    EXPECT_THROW(toldHandles(0, ""), std::runtime_error);
}

} // namespace
} // namespace soak
