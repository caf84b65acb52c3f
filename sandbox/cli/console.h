#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "sandbox/platform/terminal.h"

namespace sandbox {

/// What a line says at a glance.
enum class Mark { none, good, waits, no, starts, fault };

/// Writes to standard output: marked lines, aligned tables, and on a terminal one line
/// that is written over while something goes on. One thread.
class Console {
public:
    explicit Console(Terminal terminal) : can(terminal) {}

    /// A line of its own in bold, after a blank one.
    void heading(const std::string& text);
    void line(const std::string& text);
    /// A line of columns; each is padded to its width, the last is not.
    void row(Mark mark, const std::vector<std::string>& cells,
             const std::vector<std::size_t>& widths);
    /// Shows a share of 0 to 1 behind `text` until the next line; terminals only.
    void progress(const std::string& text, double share);
    /// Rows under a line of titles, aligned; "none" for no rows.
    void table(const std::vector<std::string>& titles,
               const std::vector<std::vector<std::string>>& rows);
    std::string arrow() const { return can.unicode ? "\u2192" : "->"; }

private:
    std::string sign(Mark mark) const;
    void clearProgress();
    void print(const std::string& text);

    Terminal can;
    bool inProgress = false;
};

/// "1.5 MB".
std::string sizeText(std::uint64_t bytes);

/// A number with its thing: "1 file", "2 files".
std::string counted(std::size_t number, const std::string& thing);

} // namespace sandbox
