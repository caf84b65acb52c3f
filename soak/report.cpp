#include "soak/report.h"

#include <iomanip>

namespace soak {
namespace {

/// What passes for to and fro. In memory that is the space between blocks that the allocator keeps;
/// 50 bytes a tick come to more within an hour. Under Wine it is two threads' worth.
struct Bounds {
    Bound memory{"memory KB", 1024};
    Bound threads{"threads", 1};
    Bound handles{"handles", 2};
};
constexpr Bounds nativeBounds;
constexpr Bounds wineBounds{.memory = {"memory KB", 2048}, .handles = {"handles", 8}};

bool judge(const Bound& bound, const std::vector<Point>& points, std::ostream& out) {
    const Growth growth = growthOf(points, bound);
    out << std::left << std::setw(12) << bound.name << std::right << std::fixed
        << std::setprecision(0) << std::setw(10) << growth.first << std::setw(10) << growth.last
        << std::setw(11) << growth.required << std::setw(11) << growth.beyondRequired()
        << std::setw(8) << bound.most << std::setw(12) << std::setprecision(1) << growth.perHour
        << "   " << (growth.isFlat ? "flat" : "GROWS") << '\n';
    return growth.isFlat;
}

template <class Counts>
void list(const char* title, const Counts& counts, std::ostream& out) {
    out << '\n' << title << '\n';
    for (const auto& [what, count] : counts) {
        out << std::setw(9) << count << "  " << what << '\n';
    }
}

} // namespace

bool report(const Findings& found, std::ostream& out) {
    out << std::fixed << std::setprecision(0) << "soak of " << found.seconds << " s, "
        << found.memory.size() << " samples, " << found.turns << " turns of faults, "
        << found.packets << " packets and " << found.packages << " packages on offer, "
        << std::setprecision(1) << 100 * found.cpuSeconds / found.seconds << " % of a core\n";
    list("done", found.done, out);
    out << std::setw(9) << found.uiGood << "  user: sittings that went well, " << found.uiOther
        << " that met a fault\n";
    list("faults of the servers that took effect", found.faults, out);
    list("faults of the client's side: a lost request each time, the others once",
         found.clientFaults, out);
    list("caught by the client's modules", found.failures, out);
    out << "\nkept by design at the end: " << found.kept.chains
        << " chains that never end, each with its thread; " << found.kept.retries
        << " threads that wait for a retry; " << found.delayedMoves
        << " moves for the restart, in the system's list; " << found.leftInUpdate
        << " files in update\n\n"
        << "            first 1/4  last 1/4   by design     beyond   bound    per hour\n";
    const Bounds& bounds = found.isWindows ? wineBounds : nativeBounds;
    const bool memory = judge(bounds.memory, found.memory, out);
    const bool threads = judge(bounds.threads, found.threads, out);
    const bool handles = judge(bounds.handles, found.handles, out);
    out << (found.hostExit == 0 ? "the host has ended in order\n"
                                : "the host has not ended in order\n");
    return memory && threads && handles && found.hostExit == 0;
}

} // namespace soak
