#include "sandbox/cli/verb.h"

#include <CLI/CLI.hpp>

namespace sandbox {

void endHelp(CLI::App* command, const HelpEnd& end) {
    std::string text = end.words.empty() ? "" : end.words + "\n";
    text += end.examples.size() == 1 ? "Example:\n" : "Examples:\n";
    for (const std::string& example : end.examples) {
        text += "  xsandbox " + example + "\n";
    }
    text += "\nExit status:\n  0  " + end.asExpected + "\n";
    text += end.different.empty() ? "" : "  1  " + end.different + "\n";
    text += "  2  the sandbox itself failed or was called wrongly";
    command->footer(text);
}

} // namespace sandbox
