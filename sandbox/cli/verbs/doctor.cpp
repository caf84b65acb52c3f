#include "sandbox/cli/verbs/doctor.h"

#include <CLI/CLI.hpp>
#include <optional>

#include "sandbox/doctor/doctor.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;
using doctor::Finding;
using doctor::Report;
using doctor::Severity;

struct DoctorOptions {
    std::string folder;
    std::optional<std::string> fileList;
    std::optional<std::string> settings;
    std::optional<std::string> versions;
};

/// A store that is not there counts as one that was never written, so a slip in its name would.
void takeFile(const char* option, const std::optional<std::string>& told,
              std::filesystem::path& place) {
    if (!told) {
        return;
    }
    std::error_code error;
    if (!std::filesystem::is_regular_file(*told, error)) {
        throw std::runtime_error(std::string(option) + ": there is no file \"" + *told + "\"");
    }
    place = *told;
}

doctor::Places placesToldBy(const DoctorOptions& options) {
    doctor::Places places = doctor::placesOf(options.folder);
    takeFile("--file-list", options.fileList, places.fileList);
    takeFile("--settings", options.settings, places.settings);
    takeFile("--versions", options.versions, places.versions);
    return places;
}

void showFindings(const Report& report, Severity severity, const char* title, Console& console) {
    bool isFirst = true;
    for (const Finding& finding : report.findings) {
        const doctor::Kind& kind = doctor::kindOf(finding.code);
        if (kind.severity != severity) {
            continue;
        }
        if (std::exchange(isFirst, false)) {
            console.heading(title);
        }
        console.row(severity == Severity::fault ? Mark::fault : Mark::waits, {finding.what}, {});
        console.line(std::string("      means: ") + kind.means);
        console.line(std::string("      do:    ") + kind.remedy);
    }
}

void showRestOf(const Report& report, Console& console) {
    if (!report.inUse.empty()) {
        std::vector<Console::Cells> rows;
        for (const doctor::InUse& file : report.inUse) {
            rows.push_back({file.file, file.by, file.replaceWaits ? "its update waits" : ""});
        }
        console.heading("Files in use");
        console.table({"file", "by", ""}, rows);
    }
    if (!report.unseen.empty()) {
        console.heading("Not looked at");
        for (const std::string& what : report.unseen) {
            console.line("    " + what);
        }
    }
    console.heading("Result");
    console.row(report.findings.empty() ? Mark::good : Mark::fault,
                {counted(report.findings.size(), "finding") + " in " +
                 counted(report.files, "file") + " and " + counted(report.listed, "entry") +
                 " of filelist.xml"},
                {});
}

Json documentOf(const Report& report) {
    Json findings = Json::array();
    for (const Finding& finding : report.findings) {
        const doctor::Kind& kind = doctor::kindOf(finding.code);
        findings.push_back({{"code", kind.name},
                            {"severity", kind.severity == Severity::fault ? "fault" : "notice"},
                            {"file", finding.file},
                            {"what", finding.what},
                            {"means", kind.means},
                            {"do", kind.remedy}});
    }
    Json used = Json::array();
    for (const doctor::InUse& file : report.inUse) {
        used.push_back({{"file", file.file}, {"by", file.by}, {"replaceWaits", file.replaceWaits}});
    }
    return {{"findings", findings},
            {"inUse", used},
            {"unseen", report.unseen},
            {"files", report.files},
            {"listed", report.listed}};
}

int examineClient(const DoctorOptions& options, Output& output) {
    const Report report = doctor::examine(placesToldBy(options));
    output.result(documentOf(report));
    showFindings(report, Severity::fault, "Faults", output.console());
    showFindings(report, Severity::notice, "Notices", output.console());
    showRestOf(report, output.console());
    return report.findings.empty() ? exitAsExpected : exitDifferent;
}

} // namespace

Verb addDoctor(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "doctor", "Examine a client: its files against filelist.xml, the stores, what waits for a "
                  "restart, leftovers and files in use. Writes nothing");
    const auto options = std::make_shared<DoctorOptions>();
    command->add_option("folder", options->folder, "Folder of a run, or of a client alone")
        ->required()
        ->type_name("FOLDER");
    command->add_option("--file-list", options->fileList, "filelist.xml of a client alone")
        ->type_name("FILE");
    command->add_option("--settings", options->settings, "Its settings store, a JSON object")
        ->type_name("FILE");
    command->add_option("--versions", options->versions, "Its version store, a JSON object")
        ->type_name("FILE");
    endHelp(command, {{"doctor build/demo", "doctor --json build/demo-windows"},
                      "no findings",
                      "there are findings"});
    return {command, [options](Output& output) {
                return examineClient(*options, output);
            }};
}

} // namespace sandbox
