#pragma once

#include <vector>

/// Whether a value that was sampled all along grows. Plain functions; any thread.
namespace soak {

struct Point {
    double at = 0; ///< seconds or ticks since the begin
    double value = 0;
    double required = 0; ///< the part of it that is there by design
};

/// What is judged, with the growth that is let pass beyond what is required.
struct Bound {
    const char* name;
    double most = 0;
    /// For each step of `at`, from the second quarter to the last; else in all, from the first.
    bool isPerStep = false;
};

/// Untold is what the points cannot show: there are too few, or they go to and fro by more than
/// the bound lets pass in their time.
enum class Verdict { flat, grows, untold };

struct Growth {
    double first = 0; ///< median of the earlier quarter's values
    double last = 0;  ///< of the last one's
    double required = 0;
    double perStep = 0; ///< what is beyond what is required, by step of `at`
    double swing = 0;   ///< of nine points in ten, about the medians of their quarters
    Verdict verdict = Verdict::untold;

    double beyondRequired() const { return last - first - required; }
};

/// Takes at least eight points.
Growth growthOf(const std::vector<Point>& points, const Bound& bound);

double median(std::vector<double> values);

} // namespace soak
