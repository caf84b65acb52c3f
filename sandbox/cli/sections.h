#pragma once

#include <string>
#include <vector>

#include "sandbox/cli/console.h"

namespace sandbox {

/// Lines under headings, which a run of the Kelvar channel has for itself: what the other
/// channels tell meanwhile comes behind it. One thread.
class Sections {
public:
    explicit Sections(Console& output) : console(output) {}

    /// A line of the Kelvar channel, or of all channels together.
    void row(const std::string& section, Mark mark, const std::vector<std::string>& cells,
             const std::vector<std::size_t>& widths = {});
    void heading(const std::string& section);
    bool isIn(const std::string& section) const { return current == section; }

    /// A line of another channel.
    void rowAside(const std::string& section, Mark mark, const std::vector<std::string>& cells,
                  const std::vector<std::size_t>& widths = {});
    void progressAside(const std::string& section, const std::string& text, double share);

    void beginRun() { inRun = true; }
    void endRun();

private:
    struct Line {
        std::string section;
        Mark mark;
        std::vector<std::string> cells;
        std::vector<std::size_t> widths;
    };

    Console& console;
    std::string current;
    bool inRun = false;
    std::vector<Line> waiting;
};

} // namespace sandbox
