#include "sandbox/report/axis.h"

#include <algorithm>
#include <cmath>

namespace sandbox::report {
namespace {

constexpr std::int64_t margin = 15;       ///< ms around what happens
constexpr std::int64_t shortestCut = 150; ///< ms
constexpr double shareToCut = 0.08;       ///< of all that happens
constexpr double cutWidth = 64;
constexpr double markDistance = 100;
constexpr double markRoom = 72; ///< a mark has its time behind it

struct Stretch {
    std::int64_t from, to;
};

/// When something happens, without overlaps.
std::vector<Stretch> busyStretches(const Timeline& timeline) {
    std::vector<Stretch> busy;
    for (const TimelineEvent& event : timeline.events) {
        if (event.kind == Kind::tick) {
            continue;
        }
        const Stretch next{event.start - margin, event.end + margin};
        if (!busy.empty() && next.from <= busy.back().to) {
            busy.back().to = std::max(busy.back().to, next.to);
        } else {
            busy.push_back(next);
        }
    }
    if (busy.empty()) {
        busy.push_back({timeline.begin, timeline.end + 1});
    }
    return busy;
}

std::vector<Stretch> withoutShortGaps(const std::vector<Stretch>& busy) {
    std::int64_t sum = 0;
    for (const Stretch& stretch : busy) {
        sum += stretch.to - stretch.from;
    }
    const auto least =
        std::max(shortestCut, static_cast<std::int64_t>(shareToCut * static_cast<double>(sum)));
    std::vector<Stretch> joined{busy.front()};
    for (const Stretch& stretch : busy) {
        if (stretch.from - joined.back().to > least) {
            joined.push_back(stretch);
        } else {
            joined.back().to = std::max(joined.back().to, stretch.to);
        }
    }
    return joined;
}

std::size_t ticksIn(const Timeline& timeline, const Stretch& stretch) {
    return static_cast<std::size_t>(std::count_if(
        timeline.events.begin(), timeline.events.end(), [&](const TimelineEvent& event) {
            return event.kind == Kind::tick && event.start >= stretch.from &&
                   event.start < stretch.to;
        }));
}

/// The smallest of 1, 2, 5, 10, 20, ... ms that is not below `least`.
std::int64_t roundStep(double least) {
    std::int64_t step = 1;
    for (int i = 0; static_cast<double>(step) < least; ++i) {
        step = i % 3 == 1 ? step / 2 * 5 : step * 2;
    }
    return step;
}

} // namespace

Axis::Axis(const Timeline& timeline, double length) {
    const std::vector<Stretch> busy = withoutShortGaps(busyStretches(timeline));
    std::int64_t sum = 0;
    for (const Stretch& stretch : busy) {
        sum += stretch.to - stretch.from;
    }
    const double cuts = cutWidth * static_cast<double>(busy.size() - 1);
    perMillisecond =
        std::max(length - cuts, length / 2) / static_cast<double>(std::max<std::int64_t>(sum, 1));
    double left = 0;
    for (const Stretch& stretch : busy) {
        if (!pieces.empty()) {
            const Stretch gap{pieces.back().to, stretch.from};
            pieces.push_back(
                {gap.from, gap.to, left, left + cutWidth, true, ticksIn(timeline, gap)});
            left += cutWidth;
        }
        const double width = perMillisecond * static_cast<double>(stretch.to - stretch.from);
        pieces.push_back({stretch.from, stretch.to, left, left + width, false, 0});
        left += width;
    }
}

const Axis::Piece& Axis::pieceAt(std::int64_t time) const {
    const auto found = std::find_if(pieces.begin(), pieces.end(),
                                    [time](const Piece& piece) { return time < piece.to; });
    return found == pieces.end() ? pieces.back() : *found;
}

double Axis::at(std::int64_t time) const {
    const Piece& piece = pieceAt(time);
    const double share = static_cast<double>(time - piece.from) /
                         static_cast<double>(std::max<std::int64_t>(piece.length(), 1));
    return piece.left + std::clamp(share, 0.0, 1.0) * (piece.right - piece.left);
}

bool Axis::isCut(std::int64_t time) const {
    return pieceAt(time).isCut;
}

std::vector<std::int64_t> Axis::marks() const {
    const std::int64_t step = roundStep(markDistance / perMillisecond);
    std::vector<std::int64_t> times;
    for (const Piece& piece : pieces) {
        for (std::int64_t time = (piece.from / step + 1) * step; !piece.isCut && time < piece.to;
             time += step) {
            if (at(time) + markRoom < piece.right) {
                times.push_back(time);
            }
        }
    }
    return times;
}

std::string durationText(std::int64_t milliseconds) {
    constexpr std::int64_t second = 1000;
    constexpr std::int64_t minute = 60 * second;
    if (milliseconds < second) {
        return std::to_string(milliseconds) + " ms";
    }
    if (milliseconds >= minute) {
        return std::to_string(milliseconds / minute) + " min " +
               std::to_string(milliseconds % minute / second) + " s";
    }
    const std::string hundredths = std::to_string(100 + milliseconds % second / 10).substr(1);
    return std::to_string(milliseconds / second) + "." + hundredths + " s";
}

} // namespace sandbox::report
