#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sandbox/report/timeline.h"

namespace sandbox::report {

/// Lays time out along a line in pixels. Long stretches in which nothing but ticks happens are
/// cut to a mark of fixed width.
class Axis {
public:
    struct Piece {
        std::int64_t from = 0, to = 0; ///< ms
        double left = 0, right = 0;    ///< px
        bool isCut = false;
        std::size_t ticks = 0; ///< in a piece that is cut

        std::int64_t length() const { return to - from; }
    };

    /// About `length` px long; the cuts get half of it at most.
    Axis(const Timeline& timeline, double length);

    double at(std::int64_t time) const;
    bool isCut(std::int64_t time) const;
    double end() const { return pieces.back().right; }
    const std::vector<Piece>& all() const { return pieces; }
    /// Times of round numbers, about a hundred pixels apart, with room for their text.
    std::vector<std::int64_t> marks() const;

private:
    const Piece& pieceAt(std::int64_t time) const;

    std::vector<Piece> pieces;
    double perMillisecond = 1;
};

/// "12 ms", "1.25 s", "3 min 20 s".
std::string durationText(std::int64_t milliseconds);

} // namespace sandbox::report
