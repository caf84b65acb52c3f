#pragma once

#include <cstdint>
#include <ostream>
#include <string>
#include <vector>

#include "sandbox/platform/terminal.h"

namespace sandbox {

/// What a line says at a glance.
enum class Mark { none, good, waits, no, starts, fault };

/// Writes for people: marked lines, aligned tables, and on a terminal one line that is written
/// over while something goes on. What is wider than the terminal goes on below itself, and the
/// cells of a table are shortened; elsewhere every line is whole. What a terminal would not show
/// but obey, or cannot read, is escaped. One thread.
class Console {
public:
    using Cells = std::vector<std::string>;

    /// The stream outlives the object.
    Console(std::ostream& output, Terminal terminal) : stream(output), can(terminal) {}

    /// A line of its own in bold, after a blank one.
    void heading(const std::string& text);
    void line(const std::string& told);
    /// A line of columns; each is padded to its width, the last is not.
    void row(Mark mark, const Cells& told, const std::vector<std::size_t>& widths);
    /// Shows a share of 0 to 1 behind `text` until the next line; terminals only.
    void progress(const std::string& text, double share);
    /// Rows under a line of titles, aligned; "none" for no rows.
    void table(const Cells& titles, std::vector<Cells> rows);
    std::string arrow() const { return can.unicode ? "\u2192" : "->"; }

private:
    std::string sign(Mark mark) const;
    std::vector<std::size_t> columnsOf(const Cells& titles, const std::vector<Cells>& rows) const;
    void put(const std::string& text);
    void putBelow(const std::string& lead, std::size_t leadWidth, const std::string& text);
    void clearProgress();

    std::ostream& stream;
    Terminal can;
    bool inProgress = false;
};

/// "1.5 MB".
std::string sizeText(std::uint64_t bytes);

/// A number with its thing: "1 file", "2 files".
std::string counted(std::size_t number, const std::string& thing);

} // namespace sandbox
