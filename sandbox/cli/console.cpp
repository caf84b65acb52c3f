#include "sandbox/cli/console.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <numeric>
#include <sstream>

#include "sandbox/cli/wrapping.h"
#include "sandbox/common/printable.h"

namespace sandbox {
namespace {

constexpr std::size_t mostOfBar = 24;
constexpr std::size_t leastOfColumn = 8;
constexpr std::size_t farIndent = 8; ///< of a last cell that has no room beside the others
constexpr std::uint64_t kilobyte = 1024;
constexpr const char* indent = "  ";
constexpr std::size_t indentWidth = 2;
constexpr const char* bold = "\033[1m";
constexpr const char* plain = "\033[0m";
constexpr const char* lineStart = "\r\033[K"; ///< goes there and clears the line

struct Sign {
    const char* ascii;
    const char* drawn;
    const char* color;
};

constexpr std::array<Sign, 6> signs{{
    {"  ", " ", ""},
    {"ok", "\u2713", "\033[32m"},
    {"..", "\u25f7", "\033[33m"},
    {"--", "\u2013", "\033[2m"},
    {"->", "\u2192", "\033[36m"},
    {"!!", "\u2717", "\033[31m"},
}};

Console::Cells printableCells(Console::Cells cells) {
    for (std::string& cell : cells) {
        cell = printable(cell);
    }
    return cells;
}

std::string padded(std::string text, std::size_t width) {
    const std::size_t length = textWidth(text);
    text.append(length < width ? width - length : 0, ' ');
    return text;
}

std::string barOf(std::size_t length, double share, bool unicode) {
    const auto done =
        static_cast<std::size_t>(std::clamp(share, 0.0, 1.0) * static_cast<double>(length));
    std::string bar;
    for (std::size_t i = 0; i < length; ++i) {
        const bool full = i < done;
        bar += unicode ? (full ? "\u2588" : "\u2591") : (full ? "#" : ".");
    }
    return bar;
}

} // namespace

void Console::put(const std::string& text) {
    clearProgress();
    // Trailing blanks of padded columns only make output harder to compare.
    const std::size_t end = text.find_last_not_of(' ');
    stream << text.substr(0, end == std::string::npos ? 0 : end + 1) << std::endl;
}

/// The text behind `lead`, and what has no room there under its own beginning.
void Console::putBelow(const std::string& lead, std::size_t leadWidth, const std::string& text) {
    if (can.width == 0 || leadWidth + textWidth(text) <= can.width) {
        put(lead + text);
        return;
    }
    const bool hasRoom = leadWidth <= can.width / 2;
    const std::size_t column = hasRoom ? leadWidth : farIndent;
    if (!hasRoom) {
        put(lead);
    }
    bool isBeside = hasRoom;
    for (const std::string& part : wrapped(text, can.width - std::min(column, can.width - 1))) {
        put((isBeside ? lead : std::string(column, ' ')) + part);
        isBeside = false;
    }
}

void Console::heading(const std::string& text) {
    put("");
    for (const std::string& part : wrapped(printable(text), can.width)) {
        put(can.color ? bold + part + plain : part);
    }
}

void Console::line(const std::string& told) {
    const std::string text = printable(told);
    const std::string lead = indent + text.substr(0, text.find_first_not_of(' '));
    putBelow(lead, lead.size(), text.substr(lead.size() - indentWidth));
}

std::string Console::sign(Mark mark) const {
    const Sign& known = signs[static_cast<std::size_t>(mark)];
    const std::string text = can.unicode ? known.drawn : known.ascii;
    return can.color && *known.color != '\0' ? known.color + text + plain : text;
}

void Console::row(Mark mark, const Cells& told, const std::vector<std::size_t>& widths) {
    const Cells cells = printableCells(told);
    std::string lead = indent + sign(mark) + indent;
    std::size_t leadWidth = 2 * indentWidth + (can.unicode ? 1 : 2);
    for (std::size_t i = 0; i + 1 < cells.size(); ++i) {
        const std::string cell = padded(cells[i], i < widths.size() ? widths[i] : 0);
        lead += cell + indent;
        leadWidth += textWidth(cell) + indentWidth;
    }
    putBelow(lead, leadWidth, cells.empty() ? "" : cells.back());
}

void Console::clearProgress() {
    if (inProgress) {
        stream << lineStart;
        inProgress = false;
    }
}

void Console::progress(const std::string& text, double share) {
    if (!can.interactive) {
        return;
    }
    // One column is left free: some terminals go to the next line when the last is written.
    const std::size_t room = can.width - std::min(can.width, 2 * indentWidth + 1);
    const std::size_t length = std::min(mostOfBar, room / 3);
    stream << lineStart << indent << shortened(printable(text), room - length, "..") << indent
           << barOf(length, share, can.unicode) << std::flush;
    inProgress = true;
}

/// As wide as the widest cell; where that is too much for the terminal, the widest give way.
std::vector<std::size_t> Console::columnsOf(const Cells& titles,
                                            const std::vector<Cells>& rows) const {
    std::vector<std::size_t> widths(titles.size(), 0);
    const auto widen = [&widths](const Cells& cells) {
        for (std::size_t i = 0; i < cells.size() && i < widths.size(); ++i) {
            widths[i] = std::max(widths[i], textWidth(cells[i]));
        }
    };
    widen(titles);
    std::for_each(rows.begin(), rows.end(), widen);
    const auto total = [&widths] {
        return std::accumulate(widths.begin(), widths.end(), indentWidth * widths.size());
    };
    while (can.width != 0 && total() > can.width) {
        const auto widest = std::max_element(widths.begin(), widths.end());
        if (*widest <= leastOfColumn) {
            break;
        }
        --*widest;
    }
    return widths;
}

void Console::table(const Cells& titles, std::vector<Cells> rows) {
    if (rows.empty()) {
        line("none");
        return;
    }
    for (Cells& cells : rows) {
        cells = printableCells(std::move(cells));
    }
    const std::vector<std::size_t> widths = columnsOf(titles, rows);
    const auto write = [&](const Cells& cells) {
        std::string text;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            text += indent + padded(shortened(cells[i], widths[i], ".."), widths[i]);
        }
        put(text);
    };
    write(titles);
    Cells rules;
    rules.reserve(widths.size());
    for (const std::size_t width : widths) {
        rules.emplace_back(width, '-');
    }
    write(rules);
    std::for_each(rows.begin(), rows.end(), write);
}

std::string sizeText(std::uint64_t bytes) {
    if (bytes < kilobyte) {
        return std::to_string(bytes) + " B";
    }
    const bool small = bytes < kilobyte * kilobyte;
    std::ostringstream text;
    text << std::fixed << std::setprecision(1)
         << static_cast<double>(bytes) / static_cast<double>(small ? kilobyte : kilobyte * kilobyte)
         << (small ? " KB" : " MB");
    return text.str();
}

std::string counted(std::size_t number, const std::string& thing) {
    if (number == 1) {
        return "1 " + thing;
    }
    const bool endsInY = thing.back() == 'y';
    return std::to_string(number) + " " +
           (endsInY ? thing.substr(0, thing.size() - 1) + "ies" : thing + "s");
}

} // namespace sandbox
