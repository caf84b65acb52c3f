#pragma once

#include <map>
#include <string>
#include <vector>

#include "sandbox/report/kelvarrun.h"
#include "sandbox/report/logline.h"
#include "sandbox/report/movereader.h"
#include "sandbox/report/saying.h"

namespace sandbox::report {

/// What a log tells of the Kelvar channel.
struct Story {
    std::vector<KelvarRun> runs;
    std::size_t shutGates = 0;
};

/// Reads the runs of the Kelvar channel out of a log's lines, in order. Lines that several
/// channels share are told apart by their thread; without threads by the line before. Two
/// runs at the same time are not told apart. One thread.
class StoryReader {
public:
    void see(const LogLine& line);
    /// The log is over. Call once.
    Story end();

private:
    struct Thread {
        bool inKelvar = false; ///< its last line was of that channel
        bool atShutGate = false;
        std::string window; ///< that was open at its last look
    };

    KelvarRun& run(const LogLine& line);
    void begin(const LogLine& line);
    void take(const Saying& saying, const LogLine& line, Thread& thread);
    void converse(const Saying& saying, const LogLine& line);
    void filter(const Saying& saying, KelvarRun& in);
    void fetch(const Saying& saying, const LogLine& line);
    void finish(const Saying& saying, const LogLine& line, Thread& thread);
    void answerLast(KelvarRun& in, Question::Outcome outcome);
    void close();

    Story story;
    std::map<std::string, Thread> threads;
    bool isOpen = false;
    MoveReader moves;
};

} // namespace sandbox::report
