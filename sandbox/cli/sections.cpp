#include "sandbox/cli/sections.h"

#include <utility>

namespace sandbox {

void Sections::heading(const std::string& section) {
    if (current != section) {
        current = section;
        console.heading("  " + section);
    }
}

void Sections::row(const std::string& section, Mark mark, const std::vector<std::string>& cells,
                   const std::vector<std::size_t>& widths) {
    heading(section);
    console.row(mark, cells, widths);
}

void Sections::rowAside(const std::string& section, Mark mark,
                        const std::vector<std::string>& cells,
                        const std::vector<std::size_t>& widths) {
    if (inRun) {
        waiting.push_back({section, mark, cells, widths});
    } else {
        row(section, mark, cells, widths);
    }
}

void Sections::progressAside(const std::string& section, const std::string& text, double share) {
    if (!inRun) {
        heading(section);
        console.progress(text, share);
    }
}

void Sections::endRun() {
    inRun = false;
    for (const Line& line : std::exchange(waiting, {})) {
        row(line.section, line.mark, line.cells, line.widths);
    }
}

} // namespace sandbox
