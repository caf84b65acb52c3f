#include "sandbox/cli/console.h"

#include <algorithm>
#include <array>
#include <iomanip>
#include <iostream>
#include <sstream>

namespace sandbox {
namespace {

constexpr std::size_t barLength = 24;
constexpr std::uint64_t kilobyte = 1024;
constexpr const char* indent = "  ";

struct Sign {
    const char* plain;
    const char* drawn;
};

constexpr std::array<Sign, 6> signs{{
    {"  ", " "},
    {"ok", "\033[32m\u2713\033[0m"},
    {"..", "\033[33m\u25f7\033[0m"},
    {"--", "\033[2m\u2013\033[0m"},
    {"->", "\033[36m\u2192\033[0m"},
    {"!!", "\033[31m\u2717\033[0m"},
}};

std::string padded(std::string text, std::size_t width) {
    text.append(text.size() < width ? width - text.size() : 0, ' ');
    return text;
}

std::vector<std::size_t> widthsOf(const std::vector<std::string>& titles,
                                  const std::vector<std::vector<std::string>>& rows) {
    std::vector<std::size_t> widths;
    widths.reserve(titles.size());
    for (const std::string& title : titles) {
        widths.push_back(title.size());
    }
    for (const auto& cells : rows) {
        for (std::size_t i = 0; i < cells.size() && i < widths.size(); ++i) {
            widths[i] = std::max(widths[i], cells[i].size());
        }
    }
    return widths;
}

} // namespace

void Console::print(const std::string& text) {
    clearProgress();
    // Trailing blanks of padded columns only make output harder to compare.
    const std::size_t end = text.find_last_not_of(' ');
    std::cout << text.substr(0, end == std::string::npos ? 0 : end + 1) << std::endl;
}

void Console::heading(const std::string& text) {
    print("");
    print(can.interactive ? "\033[1m" + text + "\033[0m" : text);
}

void Console::line(const std::string& text) {
    print(indent + text);
}

std::string Console::sign(Mark mark) const {
    const Sign& both = signs[static_cast<std::size_t>(mark)];
    return can.unicode ? both.drawn : both.plain;
}

void Console::row(Mark mark, const std::vector<std::string>& cells,
                  const std::vector<std::size_t>& widths) {
    std::string text = indent + sign(mark);
    for (std::size_t i = 0; i < cells.size(); ++i) {
        text += indent + padded(cells[i], i < widths.size() ? widths[i] : 0);
    }
    print(text);
}

void Console::clearProgress() {
    if (inProgress) {
        std::cout << "\r\033[K";
        inProgress = false;
    }
}

void Console::progress(const std::string& text, double share) {
    if (!can.interactive) {
        return;
    }
    const auto done = static_cast<std::size_t>(std::clamp(share, 0.0, 1.0) * barLength);
    std::string bar;
    for (std::size_t i = 0; i < barLength; ++i) {
        const bool full = i < done;
        bar += can.unicode ? (full ? "\u2588" : "\u2591") : (full ? "#" : ".");
    }
    std::cout << "\r\033[K" << indent << text << "  " << bar << std::flush;
    inProgress = true;
}

void Console::table(const std::vector<std::string>& titles,
                    const std::vector<std::vector<std::string>>& rows) {
    if (rows.empty()) {
        line("none");
        return;
    }
    const std::vector<std::size_t> widths = widthsOf(titles, rows);
    const auto write = [&](const std::vector<std::string>& cells) {
        std::string text = indent;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            text += padded(cells[i], widths[i]) + indent;
        }
        print(text);
    };
    write(titles);
    std::vector<std::string> rules;
    rules.reserve(widths.size());
    for (const std::size_t width : widths) {
        rules.emplace_back(width, '-');
    }
    write(rules);
    for (const auto& cells : rows) {
        write(cells);
    }
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
