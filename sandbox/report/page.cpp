#include "sandbox/report/page.h"

#include <sstream>

#include "sandbox/report/axis.h"
#include "sandbox/report/pagestyle.h"
#include "sandbox/report/picture.h"

namespace sandbox::report {
namespace {

struct Legend {
    const char* of;    ///< class
    const char* shape; ///< path in a square of 12
    const char* words;
};

constexpr Legend legends[] = {
    {"bar request", "", "request, until its answer"},
    {"bar transfer", "", "transfer of a file"},
    {"bar move", "", "move, with unpacking and the looks at the file"},
    {"mark fault", "M6 0L12 6L6 12L0 6z", "fault of the sandbox"},
    {"mark notification", "M1 6a5 5 0 1 0 10 0a5 5 0 1 0 -10 0z", "notification"},
    {"mark program", "M2 1L11 6L2 11z", "program, or command of the user"},
    {"mark end", "M5 0h2v12h-2z", "begin or end: of the host, of a run"},
    {"mark tick", "M5.5 2h1v8h-1z", "tick of the host"},
};

void writeLegend(std::ostream& out) {
    out << "<ul class=\"legend\">\n";
    for (const Legend& legend : legends) {
        out << "<li><svg viewBox=\"0 0 12 12\" aria-hidden=\"true\">";
        if (*legend.shape == '\0') {
            out << "<g class=\"key " << legend.of + 4
                << "\"><rect y=\"1\" width=\"12\" height=\"10\" "
                << "fill=\"var(--c)\"/></g>";
        } else {
            out << "<path class=\"" << legend.of << "\" d=\"" << legend.shape << "\"/>";
        }
        out << "</svg>" << legend.words << "</li>\n";
    }
    out << "</ul>\n";
}

void writeRuns(std::ostream& out, const Explanation& told) {
    for (const KelvarRun& run : told.runs) {
        out << "<p>Run " << run.number << " of the Kelvar channel";
        if (!run.targetVersion.empty()) {
            out << ", to " << escaped(run.targetVersion);
        }
        out << ": " << run.materials.size() << " materials; " << escaped(run.endWords) << ".</p>\n";
    }
    for (const std::string& missing : told.known.missing) {
        out << "<p class=\"quiet\">" << escaped(missing) << ".</p>\n";
    }
    if (told.known.events.empty()) {
        out << "<p class=\"quiet\">A log alone tells no notifications, no faults, and the end of a "
               "request only by what follows it.</p>\n";
    }
}

void writeEvents(std::ostream& out, const Timeline& timeline) {
    out << "<table>\n<thead><tr><th>time</th><th class=\"number\">duration</th><th>lane</th>"
           "<th>kind</th><th>what</th></tr></thead>\n<tbody>\n";
    for (const TimelineEvent& event : timeline.events) {
        if (event.kind == Kind::tick) {
            continue;
        }
        out << "<tr" << (event.hasFailed ? " class=\"failed\"" : "") << "><td class=\"time\">"
            << timeText(event.start, false) << "</td><td class=\"number\">";
        if (event.isBar()) {
            out << (event.isOpen ? "&gt; " : "") << durationText(event.duration());
        }
        out << "</td><td>" << titleOf(event.lane) << "</td><td>" << nameOf(event.kind)
            << (event.hasFailed && event.isBar() ? ", failed" : "") << "</td><td class=\"what\">"
            << escaped(event.title) << "</td></tr>\n";
    }
    out << "</tbody>\n</table>\n";
}

} // namespace

std::string pageOf(const Timeline& timeline, const Explanation& told, const std::string& source) {
    const std::string title = told.known.title.empty() ? "Timeline of " + source : told.known.title;
    std::ostringstream out;
    out << "<!DOCTYPE html>\n<html lang=\"en\">\n<head>\n<meta charset=\"utf-8\">\n"
        << "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n"
        // Without an icon of its own the browser would ask for one.
        << "<link rel=\"icon\" href=\"data:,\">\n<title>" << escaped(title) << "</title>\n<style>"
        << pageStyle << "</style>\n</head>\n<body>\n<main>\n<h1>" << escaped(title) << "</h1>\n"
        << "<p class=\"quiet\">" << escaped(source) << ", "
        << timeText(timeline.begin, timeline.hasDates) << " to " << timeText(timeline.end, false)
        << ", " << durationText(timeline.end - timeline.begin) << "; "
        << timeline.count(Kind::request) << " requests, " << timeline.count(Kind::transfer)
        << " transfers, " << timeline.count(Kind::move) << " moves</p>\n";
    writeRuns(out, told);
    writeLegend(out);
    out << "<div class=\"scroll\" tabindex=\"0\" role=\"region\" aria-label=\"Picture of the "
           "timeline\">\n"
        << pictureOf(timeline) << "</div>\n<h2>Events</h2>\n";
    writeEvents(out, timeline);
    out << "</main>\n</body>\n</html>\n";
    return out.str();
}

} // namespace sandbox::report
