#pragma once

#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "sandbox/report/timeline.h"

namespace sandbox::report {

/// Makes bars of a log's lines: requests, transfers, moves. One thread.
class BarReader {
public:
    /// Of a line with a time.
    void see(const LogLine& line, Lane lane);

    /// The log is over. What the host saw of requests ends them better than the log. Call once.
    std::vector<TimelineEvent> end(const Knowledge& known);

private:
    struct Thread {
        std::int64_t before = 0; ///< time of the line before
        bool isUsed = false;
        std::optional<std::size_t> running; ///< the transfer or move that its next lines end
        std::string channel;                ///< of what runs
    };
    struct Sent {
        std::size_t bar;
        std::string url; ///< or its path
        bool isOver = false;
    };

    std::size_t add(Kind kind, Lane lane, std::int64_t start, const LogLine& line,
                    const std::string& title);
    void request(const LogLine& line, Lane lane);
    void answer(const LogLine& line);
    void abandon(std::size_t bar, const LogLine& line);
    void abandonChain(const LogLine& line);
    bool begin(const LogLine& line, Lane lane, Thread& thread);
    void goOn(const LogLine& line, Thread& thread);
    void endBySight(const Knowledge& known);

    std::vector<TimelineEvent> bars;
    std::map<std::string, Thread> threads;
    std::vector<Sent> sent;
    std::map<std::string, std::size_t> waiting; ///< channel to bar of the unanswered request
    std::set<std::size_t> abandoned;            ///< bars that end with the chain behind theirs
    std::int64_t last = 0;
};

} // namespace sandbox::report
