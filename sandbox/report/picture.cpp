#include "sandbox/report/picture.h"

#include <algorithm>
#include <map>
#include <sstream>

#include "sandbox/report/axis.h"

namespace sandbox::report {
namespace {

constexpr double edge = 12; // px, as all that follows
constexpr double axisHeight = 36;
constexpr double laneTitleHeight = 18;
constexpr double laneGap = 8;
constexpr double rowHeight = 15;
constexpr double barHeight = 12;
constexpr double least = 3;  ///< width of the shortest bar
constexpr double barGap = 1; ///< bars of one row
constexpr double perLetter = 6.2;
constexpr double titleDistance = 900;
constexpr double titleRoom = 110;
constexpr double perBar = 18;
constexpr double shortestPicture = 1200;
constexpr double longestPicture = 6000;

/// A lane as it is drawn: where its rows lie, and in which row each event is.
struct DrawnLane {
    Lane lane;
    double top = 0;
    std::vector<double> rowEnds; ///< px; how far each row is filled
    std::vector<std::pair<const TimelineEvent*, std::size_t>> bars;
    std::vector<const TimelineEvent*> marks;

    double height() const {
        const double rows = static_cast<double>(rowEnds.size()) + (marks.empty() ? 0 : 1);
        return laneTitleHeight + rowHeight * std::max(rows, 1.0);
    }
    double marksTop() const {
        return top + laneTitleHeight + rowHeight * static_cast<double>(rowEnds.size());
    }
};

double widthOf(const TimelineEvent& event, const Axis& axis) {
    return std::max(least, axis.at(event.end) - axis.at(event.start));
}

/// Bars that would lie over each other get rows of their own.
void place(const TimelineEvent& event, const Axis& axis, DrawnLane& lane) {
    if (!event.isBar()) {
        lane.marks.push_back(&event);
        return;
    }
    const double left = axis.at(event.start);
    const auto free = std::find_if(lane.rowEnds.begin(), lane.rowEnds.end(),
                                   [left](double end) { return end <= left; });
    const auto row = static_cast<std::size_t>(free - lane.rowEnds.begin());
    if (free == lane.rowEnds.end()) {
        lane.rowEnds.push_back(0);
    }
    lane.rowEnds[row] = left + widthOf(event, axis) + barGap;
    lane.bars.emplace_back(&event, row);
}

std::vector<DrawnLane> lanesOf(const Timeline& timeline, const Axis& axis) {
    std::vector<DrawnLane> lanes;
    double top = axisHeight;
    for (const Lane lane : allLanes) {
        DrawnLane drawn{lane, top, {}, {}, {}};
        for (const TimelineEvent& event : timeline.events) {
            if (event.lane == lane) {
                place(event, axis, drawn);
            }
        }
        if (!drawn.bars.empty() || !drawn.marks.empty()) {
            top += drawn.height() + laneGap;
            lanes.push_back(std::move(drawn));
        }
    }
    return lanes;
}

std::string hover(const TimelineEvent& event, const Timeline& timeline) {
    std::string text = event.title + "\n" + timeText(event.start, timeline.hasDates);
    if (event.isBar()) {
        text += ", " + durationText(event.duration()) +
                (event.isOpen ? " at least, its end is not told" : "") +
                (event.hasFailed ? ", failed" : "");
    }
    if (event.line != 0) {
        text += ", line " + std::to_string(event.line);
    }
    return "<title>" + escaped(text) + "</title>";
}

void drawBar(std::ostream& out, const TimelineEvent& event, double top, const Axis& axis,
             const Timeline& timeline) {
    const double left = edge + axis.at(event.start);
    const double width = widthOf(event, axis);
    out << "<g class=\"bar " << nameOf(event.kind) << (event.hasFailed ? " failed" : "")
        << (event.isOpen ? " open" : "") << "\">" << hover(event, timeline) << "<rect x=\"" << left
        << "\" y=\"" << top << "\" width=\"" << width << "\" height=\"" << barHeight
        << "\" rx=\"1.5\"/>";
    if (perLetter * static_cast<double>(event.title.size()) + 6 < width) {
        out << "<text x=\"" << left + 4 << "\" y=\"" << top + 9.5 << "\">" << escaped(event.title)
            << "</text>";
    }
    out << "</g>\n";
}

const char* shapeOf(Kind kind) {
    switch (kind) {
    case Kind::tick:
        return "M-0.5 2h1v8h-1z";
    case Kind::fault:
        return "M0 0L6 6L0 12L-6 6z";
    case Kind::runEnd:
    case Kind::host:
        return "M-1 0h2v12h-2z";
    case Kind::notification:
        return "M-5 6a5 5 0 1 0 10 0a5 5 0 1 0 -10 0z";
    default:
        return "M-4 1L5 6L-4 11z";
    }
}

void drawMark(std::ostream& out, const TimelineEvent& event, double top, const Axis& axis,
              const Timeline& timeline) {
    if (event.kind == Kind::tick && axis.isCut(event.start)) {
        return; // the cut tells how many there are
    }
    out << "<path class=\"mark " << nameOf(event.kind) << (event.hasFailed ? " failed" : "")
        << "\" transform=\"translate(" << edge + axis.at(event.start) << " " << top << ")\" d=\""
        << shapeOf(event.kind) << "\">" << hover(event, timeline) << "</path>\n";
}

void drawAxis(std::ostream& out, const Axis& axis, double height) {
    for (const std::int64_t time : axis.marks()) {
        const double x = edge + axis.at(time);
        out << "<path class=\"grid\" d=\"M" << x << " 16V" << height
            << "\"/><text class=\"time\" x=\"" << x + 3 << "\" y=\"14\">" << timeText(time, false)
            << "</text>\n";
    }
    for (const Axis::Piece& piece : axis.all()) {
        if (piece.isCut) {
            const double middle = edge + (piece.left + piece.right) / 2;
            out << "<rect class=\"cut\" x=\"" << edge + piece.left << "\" y=\"0\" width=\""
                << piece.right - piece.left << "\" height=\"" << height
                << "\"/><text class=\"cut\" x=\"" << middle << "\" y=\"14\">"
                << durationText(piece.length()) << "</text>";
            if (piece.ticks != 0) {
                out << "<text class=\"cut\" x=\"" << middle << "\" y=\"" << 28 << "\">"
                    << piece.ticks << (piece.ticks == 1 ? " tick" : " ticks") << "</text>";
            }
            out << "\n";
        }
    }
}

/// How far a lane's title at `x` has to go on, not to lie in a cut.
double behindCuts(const Axis& axis, double x) {
    double shift = 0;
    for (const Axis::Piece& piece : axis.all()) {
        if (piece.isCut && x + shift < piece.right && x + shift + titleRoom > piece.left) {
            shift = piece.right - x + barGap;
        }
    }
    return shift;
}

void drawLane(std::ostream& out, const DrawnLane& lane, double width, const Axis& axis,
              const Timeline& timeline) {
    out << "<g>\n";
    const int titles = static_cast<int>(width / titleDistance) + 1;
    for (int i = 0; i < titles; ++i) {
        const double before = titleDistance * i;
        const double left = edge + before + behindCuts(axis, before);
        if (left + titleRoom < width) {
            out << "<text class=\"lanetitle\" x=\"" << left << "\" y=\"" << lane.top + 12 << "\">"
                << titleOf(lane.lane) << "</text>\n";
        }
    }
    for (const auto& [event, row] : lane.bars) {
        const double top = lane.top + laneTitleHeight + rowHeight * static_cast<double>(row);
        drawBar(out, *event, top, axis, timeline);
    }
    for (const TimelineEvent* event : lane.marks) {
        drawMark(out, *event, lane.marksTop(), axis, timeline);
    }
    out << "</g>\n";
}

double lengthFor(const Timeline& timeline) {
    std::size_t bars = 0;
    for (const Kind kind : barKinds) {
        bars += timeline.count(kind);
    }
    return std::clamp(perBar * static_cast<double>(bars), shortestPicture, longestPicture);
}

} // namespace

std::string escaped(const std::string& text) {
    static const std::map<char, const char*> entities{
        {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}, {'\'', "&#39;"}};
    std::string safe;
    for (const char c : text) {
        const auto entity = entities.find(c);
        const bool isControl = static_cast<unsigned char>(c) < 0x20 && c != '\n' && c != '\t';
        safe += isControl                  ? "\xEF\xBF\xBD"
                : entity != entities.end() ? entity->second
                                           : std::string(1, c);
    }
    return safe;
}

std::string pictureOf(const Timeline& timeline) {
    const Axis axis(timeline, lengthFor(timeline));
    const std::vector<DrawnLane> lanes = lanesOf(timeline, axis);
    const double width = axis.end() + 2 * edge;
    const double height = lanes.empty() ? axisHeight : lanes.back().top + lanes.back().height();
    std::ostringstream out;
    out.imbue(std::locale::classic());
    out << "<svg role=\"img\" aria-labelledby=\"picturetitle picturetext\" width=\"" << width
        << "\" height=\"" << height << "\" viewBox=\"0 0 " << width << " " << height << "\">\n"
        << "<title id=\"picturetitle\">Timeline of the run</title>\n"
        << "<desc id=\"picturetext\">" << timeline.count(Kind::request) << " requests, "
        << timeline.count(Kind::transfer) << " transfers and " << timeline.count(Kind::move)
        << " moves, each a bar in the lane of its thread. The table below has all of them in "
           "words.</desc>\n";
    for (const DrawnLane& lane : lanes) {
        out << "<rect class=\"lane\" x=\"0\" y=\"" << lane.top << "\" width=\"" << width
            << "\" height=\"" << lane.height() << "\"/>\n";
    }
    drawAxis(out, axis, height); // behind all that happens
    for (const DrawnLane& lane : lanes) {
        drawLane(out, lane, width, axis, timeline);
    }
    out << "</svg>\n";
    return out.str();
}

} // namespace sandbox::report
