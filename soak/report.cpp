#include "soak/report.h"

#include <algorithm>
#include <array>
#include <iomanip>

#include "soak/demands.h"

namespace soak {
namespace {

/// What passes for to and fro. What a process has of its own is no measure for a leak: threads end
/// with free blocks between those of others, which comes in steps and is the allocator's.
struct Bounds {
    Bound heap{"heap, bytes a tick", 2, true};
    Bound memory{"memory KB", 1024};
    Bound threads{"threads", 1};
    Bound handles{"handles", 2};
};
constexpr Bounds nativeBounds;
/// Two threads' worth of memory; a tick is a longer time there.
constexpr Bounds wineBounds{.heap = {"heap, bytes a tick", 8, true},
                            .memory = {"memory KB", 2048},
                            .handles = {"handles", 8}};

const char* wordFor(Verdict verdict) {
    static constexpr std::array words{"flat", "GROWS", "UNTOLD: the time was too short"};
    return words.at(static_cast<std::size_t>(verdict));
}

Verdict judge(const Bound& bound, const std::vector<Point>& points, std::ostream& out) {
    constexpr double hour = 3600;
    const Growth growth = growthOf(points, bound);
    const double rate = bound.isPerStep ? growth.perStep : growth.perStep * hour;
    out << std::left << std::setw(20) << bound.name << std::right << std::fixed
        << std::setprecision(0) << std::setw(10) << growth.first << std::setw(10) << growth.last
        << std::setw(11) << growth.required << std::setw(10) << growth.beyondRequired()
        << std::setw(8) << growth.swing << std::setw(8) << bound.most << std::setw(10)
        << std::setprecision(2) << rate << "   " << wordFor(growth.verdict) << '\n';
    return growth.verdict;
}

template <class Counts>
void list(const char* title, const Counts& counts, std::ostream& out) {
    out << '\n' << title << '\n';
    for (const auto& [what, count] : counts) {
        out << std::setw(9) << count << "  " << what << '\n';
    }
}

void tell(const Findings& found, std::ostream& out) {
    out << std::fixed << std::setprecision(0) << "soak of " << found.seconds << " s, "
        << found.courses.memory.size() << " samples, " << found.turns << " turns of faults, "
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
        << " files in update\n\n";
}

/// Whether the host has ended in order.
bool tellEnd(const Findings& found, std::ostream& out) {
    if (!found.isHostGone && found.hostExit == 0) {
        out << "the host has ended in order\n";
        return true;
    }
    out << (found.isHostGone ? "the host has ended BY ITSELF" : "the host has NOT ended in order")
        << ", exit status " << found.hostExit << '\n';
    return false;
}

} // namespace

Outcome report(const Findings& found, std::ostream& out) {
    tell(found, out);
    out << "                      earlier      last  by design    beyond   swing   bound      "
           "rate\n";
    const Bounds& bounds = found.isWindows ? wineBounds : nativeBounds;
    const std::array verdicts{judge(bounds.heap, found.courses.heap, out),
                              judge(bounds.memory, found.courses.memory, out),
                              judge(bounds.threads, found.courses.threads, out),
                              judge(bounds.handles, found.courses.handles, out)};
    out << "rates are by tick for the heap, else by hour\n";
    const std::vector<std::string> unmet = unmetDemands(found);
    for (const std::string& demand : unmet) {
        out << "NOT BUSY: " << demand << '\n';
    }
    const bool hasEndedWell = tellEnd(found, out);
    if (found.isBrokenOff) {
        out << "broken off: nothing is told\n";
        return Outcome::untold;
    }
    const auto has = [&](Verdict verdict) {
        return std::find(verdicts.begin(), verdicts.end(), verdict) != verdicts.end();
    };
    if (has(Verdict::grows) || !unmet.empty() || !hasEndedWell) {
        return Outcome::faulty;
    }
    return has(Verdict::untold) ? Outcome::untold : Outcome::sound;
}

} // namespace soak
