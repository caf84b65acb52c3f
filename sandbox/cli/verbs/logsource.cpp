#include "sandbox/cli/verbs/logsource.h"

#include <CLI/CLI.hpp>
#include <stdexcept>

#include "sandbox/common/clientpath.h"
#include "sandbox/platform/filewrites.h"

namespace sandbox {

namespace {

const char* whyNoLog(const std::filesystem::path& file) {
    std::error_code error;
    if (std::filesystem::is_directory(file, error)) {
        return "a folder, not a log; --folder reads the log of a run's folder";
    }
    return std::filesystem::exists(file, error) ? "this log cannot be read" : "no such log";
}

} // namespace

void addLogSource(CLI::App* command, LogSource& source) {
    addFolder(command, source.folder);
    command->add_option("--log", source.file, "A log on its own, from the field too")
        ->type_name("FILE");
}

report::Explanation explain(const LogSource& source) {
    if (source.file.empty()) {
        return report::explainFolder(foldersOf(source.folder));
    }
    const auto text = readFile(pathOf(source.file));
    if (!text) {
        throw std::runtime_error(source.file + ": " + whyNoLog(pathOf(source.file)));
    }
    return report::explainText(*text);
}

} // namespace sandbox
