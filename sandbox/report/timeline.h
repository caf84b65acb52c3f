#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sandbox/report/explanation.h"
#include "sandbox/report/lanes.h"

namespace sandbox::report {

enum class Kind {
    request,
    transfer,
    move,
    program,
    runEnd,
    command,
    notification,
    fault,
    tick,
    host
};

inline constexpr Kind barKinds[] = {Kind::request, Kind::transfer, Kind::move};

/// "request"; also the name of its class in the page.
const char* nameOf(Kind kind);

/// Something that happened, on the log's clock.
struct TimelineEvent {
    Kind kind;
    Lane lane;
    std::int64_t start = 0;
    std::int64_t end = 0; ///< that of `start` for what has no length
    bool isOpen = false;  ///< nobody tells its end; `end` is that of the log, or where the next
                          ///< chain of its channel begins
    bool hasFailed = false;
    std::string title;
    std::size_t line = 0; ///< of the log; 0 for what others saw

    bool isBar() const { return kind <= Kind::move; }
    std::int64_t duration() const { return end - start; }
};

struct Timeline {
    std::vector<TimelineEvent> events; ///< by their start
    std::int64_t begin = 0;
    std::int64_t end = 0;
    bool hasDates = false;

    std::size_t count(Kind kind) const;
};

/// The events of a log. A request lasts until its answer: as the host saw it, else until the
/// next line of its chain. A transfer lasts until the next line of its thread. A move lasts from
/// the line before, so with the unpacking and the looks at the file, to its own last line.
/// Throws std::runtime_error for a log whose lines have no times.
Timeline timelineOf(const Explanation& told);

} // namespace sandbox::report
