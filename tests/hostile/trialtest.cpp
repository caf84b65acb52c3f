#include <gtest/gtest.h>

#include <algorithm>

#include "hostile/sections.h"
#include "hostile/surroundings.h"
#include "sandbox/materials/pefile.h"

namespace {

using namespace hostile;

Pair soundPair() {
    return pairOf(written(soundCabinet()), "bin");
}

/// A file in another place than the one that it is told to be for.
void goesTo(Pair& pair, const char* path) {
    const std::string md5 = materials::md5Hex(wantedFile());
    pair.hostile = {path, md5, md5, wantedFile()};
}

void goesAstray(Pair& pair) {
    goesTo(pair, "bin\\stray.dll");
}

/// Among the old files that were moved out of the way.
void goesToTemp(Pair& pair) {
    goesTo(pair, "update\\temp\\stray.dll");
}

bool tells(const Verdict& verdict, const std::string& fault) {
    return std::any_of(verdict.faults.begin(), verdict.faults.end(),
                       [&](const std::string& told) { return told.find(fault) != told.npos; });
}

/// The judge of all trials.
TEST(HostileTrial, FindsWhatIsNotAsItMustBe) {
    const Surroundings surroundings;
    EXPECT_EQ(tried({soundPair()}, {Fate::placed, Reason::none}).faults,
              std::vector<std::string>());
    const struct {
        const char* fault;
        Expected expected;
        void (*plant)(Pair&);
    } rows[] = {
        {"bin\\c.dll: placed",
         {Fate::refused},
         [](Pair&) {
         }},
        {"client/bin/stray.dll", {}, goesAstray},
        {"client/update/first.txt",
         {Fate::untouched},
         [](Pair&) {
         }},
        {"client/update/temp/stray.dll", {Fate::untouched}, goesToTemp},
        {"bin\\c.dll: refused", {Fate::untouched}, goesToTemp},
        {"another reason",
         {Fate::placed, Reason::tooMuch},
         [](Pair&) {
         }},
        {"neither the old nor the new",
         {},
         [](Pair& pair) {
             pair.afterHostile = {1};
         }},
        {"bin\\c.dll is not whole",
         {},
         [](Pair& pair) {
             pair.afterSound = {1};
         }},
        {"near.dll beside it",
         {Fate::either, Reason::any, true},
         [](Pair&) {
         }},
        {"near.dll beside it",
         {},
         [](Pair& pair) {
             pair.hostile.md5 = "nul";
         }},
    };
    for (const auto& row : rows) {
        Pair pair = soundPair();
        row.plant(pair);
        EXPECT_TRUE(tells(tried({pair}, row.expected), row.fault)) << row.fault;
    }
}

/// A part of what `./dev hostile-test` goes through.
TEST(HostileTrial, DoesNoHarm) {
    const Surroundings surroundings;
    for (const Tally& tally :
         {tryCabinets(19), tryBrokenCabinets(50), tryBrokenImages(100), tryNames(23)}) {
        EXPECT_EQ(tally.faults, std::vector<std::string>());
        EXPECT_FALSE(tally.details.empty());
    }
}

} // namespace
