#include "soak/growth.h"

#include <algorithm>
#include <cmath>

namespace soak {
namespace {

constexpr std::size_t fewest = 8;
constexpr double hour = 3600;

template <class Value>
double medianOf(const std::vector<Point>& points, std::size_t from, std::size_t to, Value value) {
    std::vector<double> values;
    for (std::size_t i = from; i < to; ++i) {
        values.push_back(value(points[i]));
    }
    return median(std::move(values));
}

/// By least squares.
double slope(const std::vector<Point>& points, std::size_t from) {
    const auto count = static_cast<double>(points.size() - from);
    double times = 0;
    double values = 0;
    for (std::size_t i = from; i < points.size(); ++i) {
        times += points[i].seconds / count;
        values += (points[i].value - points[i].required) / count;
    }
    double both = 0;
    double squares = 0;
    for (std::size_t i = from; i < points.size(); ++i) {
        const double time = points[i].seconds - times;
        both += time * (points[i].value - points[i].required - values);
        squares += time * time;
    }
    return squares > 0 ? both / squares : 0;
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
    const auto value = [](const Point& point) {
        return point.value;
    };
    const auto required = [](const Point& point) {
        return point.required;
    };
    const std::size_t last = points.size() - quarter;
    growth.first = medianOf(points, 0, quarter, value);
    growth.last = medianOf(points, last, points.size(), value);
    growth.required =
        medianOf(points, last, points.size(), required) - medianOf(points, 0, quarter, required);
    growth.perHour = slope(points, quarter) * hour;
    growth.isFlat = growth.beyondRequired() <= bound.most;
    return growth;
}

} // namespace soak
