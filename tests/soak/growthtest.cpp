#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>

#include "soak/growth.h"

// What a soak calls growth.

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
    Verdict verdict;
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
    EXPECT_EQ(growth.verdict, GetParam().verdict);
    EXPECT_DOUBLE_EQ(growth.beyondRequired(), GetParam().beyond);
}

INSTANTIATE_TEST_SUITE_P(
    Cases, GrowthTest,
    testing::Values(Case{"Flat", [](double) { return 7.0; }, nothing, Verdict::flat, 0},
                    Case{"TwoToAndFro",
                         [](double time) { return std::fmod(time, 20) < 10 ? 7.0 : 9.0; }, nothing,
                         Verdict::flat, 0},
                    Case{"PeaksAreNoGrowth",
                         [](double time) { return std::fmod(time, 90) < 10 ? 70.0 : 7.0; }, nothing,
                         Verdict::flat, 0},
                    Case{"WarmUp", [](double time) { return time < 300 ? 3.0 : 7.0; }, nothing,
                         Verdict::flat, 0},
                    Case{"ATenMinutesThread", oneMoreEvery(600), nothing, Verdict::grows, 5},
                    Case{"AStepInTheMiddle", [](double time) { return time < 1800 ? 7.0 : 10.0; },
                         nothing, Verdict::grows, 3},
                    Case{"AllByDesign", oneMoreEvery(600),
                         [](double time) { return std::floor(time / 600); }, Verdict::flat, 0},
                    Case{"HalfByDesign", oneMoreEvery(300),
                         [](double time) { return std::floor(time / 600); }, Verdict::grows, 4},
                    Case{"Shrinks", [](double time) { return time < 1800 ? 10.0 : 7.0; }, nothing,
                         Verdict::flat, -3}),
    [](const auto& tested) { return tested.param.name; });

struct Leak {
    const char* name;
    double bytes; ///< a tick
    double swing;
    int points;
    Verdict verdict;
};

TEST(GrowthTest, ByStepIsToldOnlyOfATimeThatShowsIt) {
    constexpr Bound leak{"heap", 2, true};
    constexpr double ticks = 20; // from one look to the next
    const Leak table[] = {
        {"an hour without", 0, 3'000, 1400, Verdict::flat},
        {"an hour of a block in ten ticks", 3.2, 3'000, 1400, Verdict::grows},
        {"what a bound in kilobytes let pass", 19, 3'000, 1400, Verdict::grows},
        {"a minute of it", 19, 3'000, 24, Verdict::grows},
        {"a minute without", 0, 3'000, 24, Verdict::untold},
        {"a minute of little", 3.2, 3'000, 24, Verdict::untold},
        {"too few points", 1'000, 0, 7, Verdict::untold},
    };
    for (const Leak& row : table) {
        std::vector<Point> points;
        for (int i = 0; i < row.points; ++i) {
            const double tick = i * ticks;
            const double start = i < row.points / 5 ? 0 : 600'000; // a warm-up is no leak
            points.push_back({tick, start + row.bytes * tick + (i % 2) * row.swing, 0});
        }
        EXPECT_EQ(growthOf(points, leak).verdict, row.verdict) << row.name;
    }
}

} // namespace
} // namespace soak
