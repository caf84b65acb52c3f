#include "sandbox/report/section.h"

#include <algorithm>
#include <map>

namespace sandbox::report {
namespace {

std::string begunAt(const KelvarRun& run, const Log& log) {
    return run.begin && log.hasTimes ? timeText(*run.begin, log.hasDates)
                                     : "line " + std::to_string(run.firstLine);
}

const char* outcomeWords(const Question& question) {
    switch (question.outcome) {
    case Question::Outcome::answered:
        return "answered";
    case Question::Outcome::refused:
        // The client has one word for a status and for no answer at all.
        return question.error == "0" ? "refused" : "failed";
    case Question::Outcome::empty:
        return "empty answer";
    default:
        return "no answer in the log";
    }
}

/// Drops columns that tell nothing in any row.
Section withoutEmpty(Section section) {
    for (std::size_t column = section.titles.size(); column-- > 0;) {
        const bool isEmpty = std::all_of(section.rows.begin(), section.rows.end(),
                                         [&](const auto& row) { return row[column].empty(); });
        const auto at = static_cast<std::ptrdiff_t>(column);
        if (isEmpty && !section.rows.empty()) {
            section.titles.erase(section.titles.begin() + at);
            for (auto& row : section.rows) {
                row.erase(row.begin() + at);
            }
        }
    }
    return section;
}

Section conversation(const KelvarRun& run) {
    Section section{"Conversation with the update platform"};
    section.titles = {"question", "outcome", "error", "status", "what the sandbox did"};
    for (const Question& question : run.questions) {
        section.rows.push_back({question.name, outcomeWords(question), question.error,
                                question.status, question.fault});
    }
    return section;
}

std::string sumOf(const KelvarRun& run) {
    std::map<std::string, std::size_t> sums;
    for (const Material& row : run.materials) {
        ++sums[row.decision];
    }
    std::string text = std::to_string(run.materials.size()) + " materials";
    for (const char* decision : {"placed", "waiting", "refused", "left", "untold"}) {
        if (sums[decision] != 0) {
            text += ", " + std::to_string(sums[decision]) + " " + decision;
        }
    }
    return text;
}

/// Why a file was left to the restart.
std::string waitWords(const Material& row) {
    if (row.withItsGroup) {
        return "a file of its group waits";
    }
    const bool isInUse = row.lockedBy.substr(0, row.lockedBy.find(',')) == "32";
    return isInUse ? "in use" : "the old file does not leave its place: " + row.lockedBy;
}

Section materials(const KelvarRun& run) {
    Section section{"Materials: " + sumOf(run)};
    section.titles = {"material", "target", "version", "decision", "why"};
    for (const std::size_t at : run.order) {
        const Material& row = run.materials[at];
        std::string why = row.reason;
        if (row.decision == "waiting") {
            why = waitWords(row);
        } else if (why.empty() && row.decision != "placed" && !row.notes.empty()) {
            why = row.notes[0];
        }
        section.rows.push_back(
            {titleOf(row), orUntold(row.target), orUntold(row.version), row.decision, why});
    }
    if (!run.asked && run.materials.empty()) {
        section.lines.push_back("the log does not tell what was on offer");
    }
    return section;
}

Section programs(const KelvarRun& run) {
    Section section{"Programs"};
    section.titles = {"program", "parameters", "outcome"};
    for (const Program& program : run.programs) {
        section.rows.push_back({program.name, program.parameters, program.outcome});
    }
    return section;
}

Section listed(const char* title, const std::vector<std::string>& lines) {
    return {title, lines};
}

Section endSection(const KelvarRun& run) {
    std::string words = run.endWords;
    if (!run.success.value_or(false) && !run.questions.empty() &&
        !run.questions.back().fault.empty()) {
        words += "; the sandbox: " + run.questions.back().fault;
    }
    std::vector<std::string> lines{words};
    lines.insert(lines.end(), run.notes.begin(), run.notes.end());
    return listed("End", lines);
}

std::string runWords(const KelvarRun& run) {
    return run.targetVersion.empty() ? orUntold("")
                                     : orUntold(run.clientVersion) + " to " + run.targetVersion;
}

} // namespace

std::vector<Section> headSections(const Explanation& told, const std::string& source) {
    Section head{"Log " + source};
    head.lines.push_back(std::to_string(told.log.lines.size()) + " lines of the plug-in, " +
                         std::to_string(told.log.others) + " others");
    const struct {
        bool is;
        const char* words;
    } remarks[] = {
        {!told.log.lines.empty() && !told.log.hasTimes,
         "not every line has a time that can be read"},
        {!told.log.lines.empty() && !told.log.hasThreads,
         "not every line has its thread: lines that channels share are told "
         "apart by the line before"},
        {told.log.repaired != 0, "some lines have bytes that are not UTF-8"},
        {told.log.endsInMidLine, "the last line has no end: it may be cut, and is left out"},
        {!told.runs.empty() && told.runs[0].beginsInMidRun, "it begins in the middle of a run"},
    };
    for (const auto& remark : remarks) {
        if (remark.is) {
            head.lines.emplace_back(remark.words);
        }
    }
    for (const std::string& from : told.known.sources) {
        head.lines.push_back("read beside it: " + from);
    }
    head.lines.insert(head.lines.end(), told.known.missing.begin(), told.known.missing.end());
    if (told.runs.size() != 1 && (told.runs.empty() || !told.known.hasObservations())) {
        // Else they stand with their run.
        for (const std::string& fault : faultWords(told.known)) {
            head.lines.push_back("fault of the sandbox that took effect: " + fault);
        }
    }
    head.lines.push_back(std::to_string(told.shutGates) +
                         " drives of the Kelvar channel found its time gate shut");
    Section runs{"Runs of the Kelvar channel"};
    runs.titles = {"run", "begun", "versions", "materials", "end"};
    for (const KelvarRun& run : told.runs) {
        runs.rows.push_back({std::to_string(run.number), begunAt(run, told.log), runWords(run),
                             std::to_string(run.materials.size()), run.endWords});
    }
    return {head, runs};
}

std::vector<Section> runSections(const KelvarRun& run, const Explanation& told) {
    std::vector<Section> sections;
    Section head{"Run " + std::to_string(run.number) + ", " + begunAt(run, told.log)};
    head.lines.push_back("channel " + orUntold(run.channel) + ", version " +
                         orUntold(run.clientVersion) + ", packet " + orUntold(run.targetVersion));
    sections.push_back(head);
    sections.push_back(withoutEmpty(conversation(run)));
    sections.push_back(withoutEmpty(materials(run)));
    if (!run.programs.empty()) {
        sections.push_back(programs(run));
    }
    if (!run.versions.empty()) {
        sections.push_back(listed("Version store", run.versions));
    }
    if (!run.faults.empty()) {
        sections.push_back(listed("Faults of the sandbox that took effect", run.faults));
    }
    sections.push_back(endSection(run));
    return sections;
}

std::vector<Section> channelSections(const Explanation& told, std::size_t first, std::size_t end) {
    std::vector<Section> sections;
    for (const ChannelStep& step : channelSteps(told.log, told.starts, first, end)) {
        const std::string title =
            step.channel == "all" ? "All channels" : "Channel " + step.channel;
        if (sections.empty() || sections.back().title != title) {
            sections.push_back({title, {}, {"line", "times", "what", ""}, {}});
        }
        sections.back().rows.push_back(
            {std::to_string(step.line), std::to_string(step.times), step.words, step.value});
    }
    return sections;
}

} // namespace sandbox::report
