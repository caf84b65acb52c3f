#include "soak/growth.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace soak {
namespace {

constexpr std::size_t fewest = 8;
constexpr double usual = 0.9; ///< share of the points that the swing is of

using Points = std::span<const Point>;

template <class Value>
double medianOf(Points points, Value value) {
    std::vector<double> values;
    for (const Point& point : points) {
        values.push_back(value(point));
    }
    return median(std::move(values));
}

double beyond(const Point& point) {
    return point.value - point.required;
}

double swingOf(Points points, std::size_t quarter) {
    std::vector<double> offs;
    for (; !points.empty(); points = points.subspan(std::min(quarter, points.size()))) {
        const Points part = points.first(std::min(quarter, points.size()));
        const double middle = medianOf(part, beyond);
        for (const Point& point : part) {
            offs.push_back(std::abs(beyond(point) - middle));
        }
    }
    std::sort(offs.begin(), offs.end());
    return offs[static_cast<std::size_t>(static_cast<double>(offs.size() - 1) * usual)];
}

Verdict verdictOn(const Growth& growth, const Bound& bound, double steps) {
    if (!bound.isPerStep) {
        return growth.beyondRequired() > bound.most ? Verdict::grows : Verdict::flat;
    }
    const double most = bound.most * steps;
    if (growth.swing > most) {
        const bool isPlain = growth.beyondRequired() > most + growth.swing;
        return isPlain ? Verdict::grows : Verdict::untold;
    }
    return growth.beyondRequired() > most ? Verdict::grows : Verdict::flat;
}

} // namespace

double median(std::vector<double> values) {
    if (values.empty()) {
        return 0;
    }
    std::sort(values.begin(), values.end());
    const std::size_t middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

Growth growthOf(const std::vector<Point>& points, const Bound& bound) {
    Growth growth;
    if (points.size() < fewest) {
        return growth;
    }
    const std::size_t quarter = points.size() / 4;
    const Points all(points);
    const Points first = all.subspan(bound.isPerStep ? quarter : 0, quarter);
    const Points last = all.last(quarter);
    const auto value = [](const Point& point) {
        return point.value;
    };
    const auto required = [](const Point& point) {
        return point.required;
    };
    const auto at = [](const Point& point) {
        return point.at;
    };
    growth.first = medianOf(first, value);
    growth.last = medianOf(last, value);
    growth.required = medianOf(last, required) - medianOf(first, required);
    growth.swing = swingOf(all.subspan(quarter), quarter);
    const double steps = medianOf(last, at) - medianOf(first, at);
    growth.perStep = steps > 0 ? growth.beyondRequired() / steps : 0;
    growth.verdict = verdictOn(growth, bound, steps);
    return growth;
}

} // namespace soak
