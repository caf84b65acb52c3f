#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>

#include "soak/growth.h"
#include "soak/tally.h"

// What a soak calls growth, and what it counts as kept by design.

namespace soak {
namespace {

constexpr int samples = 360;
constexpr double pace = 10;
constexpr Bound bound{"threads", 2};

using Course = std::function<double(double seconds)>;

struct Case {
    const char* name;
    Course value;
    Course required;
    bool isFlat;
    double beyond; ///< what is required
};

void PrintTo(const Case& tested, std::ostream* out) {
    *out << tested.name;
}

double nothing(double /*seconds*/) {
    return 0;
}

/// 7 at the begin, and one more every so many seconds.
Course oneMoreEvery(double seconds) {
    return [seconds](double time) {
        return 7 + std::floor(time / seconds);
    };
}

class GrowthTest : public testing::TestWithParam<Case> {};

TEST_P(GrowthTest, IsWhatIsBeyondTheBoundAndByNoDesign) {
    std::vector<Point> points;
    for (int i = 0; i < samples; ++i) {
        const double time = i * pace;
        points.push_back({time, GetParam().value(time), GetParam().required(time)});
    }
    const Growth growth = growthOf(points, bound);
    EXPECT_EQ(growth.isFlat, GetParam().isFlat);
    EXPECT_DOUBLE_EQ(growth.beyondRequired(), GetParam().beyond);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, GrowthTest,
    testing::Values(
        Case{"Flat", [](double) { return 7.0; }, nothing, true, 0},
        Case{"TwoToAndFro", [](double time) { return std::fmod(time, 20) < 10 ? 7.0 : 9.0; },
             nothing, true, 0},
        Case{"PeaksAreNoGrowth", [](double time) { return std::fmod(time, 90) < 10 ? 70.0 : 7.0; },
             nothing, true, 0},
        Case{"WarmUp", [](double time) { return time < 300 ? 3.0 : 7.0; }, nothing, true, 0},
        Case{"ATenMinutesThread", oneMoreEvery(600), nothing, false, 5},
        Case{"AStepInTheMiddle", [](double time) { return time < 1800 ? 7.0 : 10.0; }, nothing,
             false, 3},
        Case{"AllByDesign", oneMoreEvery(600), [](double time) { return std::floor(time / 600); },
             true, 0},
        Case{"HalfByDesign", oneMoreEvery(300), [](double time) { return std::floor(time / 600); },
             false, 4},
        Case{"Shrinks", [](double time) { return time < 1800 ? 10.0 : 7.0; }, nothing, true, -3}),
    [](const auto& tested) { return tested.param.name; });

struct Seen {
    const char* name;
    std::vector<const char*> lines;
    std::size_t chains;
    std::size_t retries = 0;
};

TEST(TallyTest, KeepsWhatNeverEnds) {
    const char* const asked = "update plugin, pkg, task check, request:{} ";
    const char* const answered = "update plugin, pkg, task check, succ: 0 ";
    const Seen table[] = {
        {"an answered check", {asked, answered}, 0},
        {"a refused one",
         {asked, "update plugin, pkg, task check, response, error : 7 ", answered},
         0},
        {"a lost one", {asked, answered, asked}, 1},
        {"one that is no JSON", {asked, "update plugin, pkg, task check, response:<html> "}, 1},
        {"the helper", {"update plugin, other, task run, check. "}, 1},
        {"an install in mute mode", {"XTaskPkgInstall check isMugeMode return "}, 1},
        {"the file channel's retry", {"update plugin, file, retry. "}, 0, 1},
    };
    for (const Seen& seen : table) {
        Tally tally;
        for (const char* line : seen.lines) {
            tally.see({{"kind", "log"}, {"text", line}, {"t", 1000}});
        }
        EXPECT_EQ(tally.kept(1000).chains, seen.chains) << seen.name;
        EXPECT_EQ(tally.kept(300'000).retries, seen.retries) << seen.name;
        EXPECT_EQ(tally.kept(302'000).retries, 0U) << seen.name;
    }
}

} // namespace
} // namespace soak
