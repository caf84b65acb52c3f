#include <gtest/gtest.h>
#include <sstream>

#include "sandbox/cli/output.h"
#include "sandbox/cli/wrapping.h"
#include "sandbox/common/printable.h"

// What people see on terminals of several kinds, and what programs get.

namespace {

using sandbox::Console;
using sandbox::Mark;
using sandbox::Terminal;

using Lines = std::vector<std::string>;

struct WrapCase {
    const char* text;
    std::size_t width;
    Lines lines;
};

TEST(WrappingTest, PartsTextAtBlanks) {
    const WrapCase cases[] = {
        {"", 10, {""}},
        {"no limit of width", 0, {"no limit of width"}},
        {"exactly", 7, {"exactly"}},
        {"two words", 8, {"two", "words"}},
        {"two words", 3, {"two", "words"}},
        {"gaps   are   dropped", 9, {"gaps  ", "are  ", "dropped"}},
        {"a wordthatistoolong b", 8, {"a", "wordthatistoolong", "b"}},
        {"  first blanks stay", 12, {"  first", "blanks stay"}},
        {"gr\u00f6\u00dfe z\u00e4hlt", 5, {"gr\u00f6\u00dfe", "z\u00e4hlt"}},
    };
    for (const WrapCase& row : cases) {
        EXPECT_EQ(sandbox::wrapped(row.text, row.width), row.lines) << row.text;
    }
}

TEST(WrappingTest, LeavesTheMiddleOut) {
    EXPECT_EQ(sandbox::shortened("0123456789", 10, ".."), "0123456789");
    EXPECT_EQ(sandbox::shortened("0123456789", 7, ".."), "012..89");
    EXPECT_EQ(sandbox::shortened("\u00e40\u00e41\u00e42\u00e43", 6, ".."), "\u00e40..\u00e43");
    EXPECT_EQ(sandbox::shortened("0123", 1, ".."), "..");
}

TEST(PrintableTest, EscapesWhatIsNoText) {
    const struct {
        std::string text;
        const char* printed;
    } cases[] = {
        {"engine\\core.dll ~", "engine\\core.dll ~"},
        {"\033[2J\a\x7f", "\\x1b[2J\\x07\\x7f"},
        {"two\r\nlines\t", "two\\x0d\\x0alines\\x09"},
        {std::string("a\0b", 3), "a\\x00b"},
        {"gr\u00f6\u00df \u2713 \U0001f600", "gr\u00f6\u00df \u2713 \U0001f600"},
        {"\u00a0\xc2\x85", "\u00a0\\xc2\\x85"},                // a control of two bytes
        {"a\xff\x80z", "a\\xff\\x80z"},                        // no first byte
        {"\xc3", "\\xc3"},                                     // cut off
        {"\xe2\x9cz", "\\xe2\\x9cz"},                          // broken off
        {"\xc0\xaf\xe0\x80\xaf", "\\xc0\\xaf\\xe0\\x80\\xaf"}, // longer than need be
        {"\xed\xa0\x80", "\\xed\\xa0\\x80"},                   // half of a pair
        {"\xf4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"},          // beyond the last
    };
    for (const auto& row : cases) {
        const std::string printed = sandbox::printable(row.text);
        EXPECT_EQ(printed, row.printed);
        EXPECT_EQ(sandbox::printable(printed), printed);
    }
}

Terminal terminalOf(std::size_t width, bool color = false) {
    Terminal terminal;
    terminal.width = width;
    terminal.color = terminal.interactive = terminal.unicode = color;
    return terminal;
}

struct ConsoleCase {
    const char* name;
    Terminal terminal;
    void (*write)(Console& console);
    const char* text;
};

void marked(Console& console) {
    console.row(Mark::good, {"core", "engine\\core.dll", "placed"}, {6, 16});
}

void longLast(Console& console) {
    console.row(Mark::fault, {"core", "not placed: the file is in use"}, {6});
}

void longLead(Console& console) {
    console.row(Mark::good, {"components\\part001.dat", "placed"}, {24});
}

void differences(Console& console) {
    console.line("    one thing differs");
}

void tabled(Console& console) {
    console.table({"name", "md5"}, {{"core", "0123456789abcdef"}, {"x", ""}});
}

void bar(Console& console) {
    console.progress("building", 0.5);
    console.line("built");
}

void foreign(Console& console) {
    console.heading("\033c");
    console.line("\033c");
    console.row(Mark::fault, {"\xff", "\x9b"}, {4});
    console.table({"name"}, {{"\n"}});
}

TEST(ConsoleTest, FitsItsTerminal) {
    const ConsoleCase cases[] = {
        {"a pipe", {}, marked, "  ok  core    engine\\core.dll   placed\n"},
        {"room enough", terminalOf(80), longLast, "  !!  core    not placed: the file is in use\n"},
        {"a long last cell", terminalOf(34), longLast,
         "  !!  core    not placed: the file\n              is in use\n"},
        {"no room beside", terminalOf(34), longLead,
         "  ok  components\\part001.dat\n        placed\n"},
        {"a line goes on below itself", terminalOf(20), differences,
         "      one thing\n      differs\n"},
        {"a table in a pipe",
         {},
         tabled,
         "  name  md5\n  ----  ----------------\n  core  0123456789abcdef\n  x\n"},
        {"a narrow table", terminalOf(18), tabled,
         "  name  md5\n  ----  ----------\n  core  0123..cdef\n  x\n"},
        {"no bar in a pipe", {}, bar, "  built\n"},
        {"a bar", terminalOf(20, true), bar,
         "\r\033[K  building  \u2588\u2588\u2591\u2591\u2591\r\033[K  built\n"},
        {"what others have written", terminalOf(80), foreign,
         "\n\\x1bc\n  \\x1bc\n  !!  \\xff  \\x9b\n  name\n  ----\n  \\x0a\n"},
        {"colours", terminalOf(80, true), [](Console& console) { console.heading("Step"); },
         "\n\033[1mStep\033[0m\n"},
    };
    for (const ConsoleCase& row : cases) {
        std::ostringstream stream;
        Console console(stream, row.terminal);
        row.write(console);
        EXPECT_EQ(stream.str(), row.text) << row.name;
    }
}

TEST(OutputTest, TellsProgramsOneObjectAndPeopleText) {
    for (const bool asJson : {false, true}) {
        std::ostringstream stream;
        sandbox::Output output(stream, {}, asJson);
        output.console().line("for people");
        output.result({{"a", 1}, {"b", "\xff"}});
        output.result({{"a", 2}});
        output.end("show", 1);
        EXPECT_EQ(stream.str(), asJson ? "{\"a\":2,\"b\":\"\xef\xbf\xbd\",\"status\":1,"
                                         "\"verb\":\"show\"}\n"
                                       : "  for people\n");
    }
}

TEST(OutputTest, ForgetsWhatAFailedVerbHadToTell) {
    std::ostringstream stream;
    sandbox::Output output(stream, {}, true);
    output.result({{"half", 1}});
    output.fail("run", "no \"disk\"");
    EXPECT_EQ(stream.str(), "{\"error\":\"no \\\"disk\\\"\",\"status\":2,\"verb\":\"run\"}\n");
}

} // namespace
