#pragma once

#include <vector>

/// Whether a value that was sampled all along grows. Plain functions; any thread.
namespace soak {

struct Point {
    double seconds = 0; ///< since the begin
    double value = 0;
    double required = 0; ///< the part of it that is there by design
};

/// What is judged, with the growth that is let pass.
struct Bound {
    const char* name;
    double most = 0; ///< from the first quarter to the last, beyond what is required
};

struct Growth {
    double first = 0; ///< median of the first quarter's values
    double last = 0;  ///< of the last one's
    double required = 0;
    double perHour = 0; ///< slope of a straight line through the last three quarters, beyond
                        ///< what is required
    bool isFlat = true;

    double beyondRequired() const { return last - first - required; }
};

/// Nothing grows in fewer than eight samples.
Growth growthOf(const std::vector<Point>& points, const Bound& bound);

double median(std::vector<double> values);

} // namespace soak
