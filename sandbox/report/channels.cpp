#include "sandbox/report/channels.h"

#include <algorithm>
#include <string_view>

#include "sandbox/report/plannedmaterials.h"
#include "sandbox/report/saying.h"

namespace sandbox::report {
namespace {

constexpr std::size_t longestValue = 90;

/// Lines that tell that a program was to be started, and the program.
struct Start {
    std::string_view begins;
    const char* file;
    const char* parameters; ///< null: any
    const char* name;
};

constexpr Start programStarts[] = {
    {"update plugin, pkg, task install, finished", "update\\setup.exe", nullptr, "setup.exe"},
    {"update plugin, other, task run, check.", "orvdefender.exe", "--install",
     "orvdefender.exe --install"},
};

struct ChannelForm {
    std::string_view begins;
    const char* channel;
    const char* words;
    bool hasValue = false;
    bool isEachTick = false;
};

constexpr ChannelForm channelForms[] = {
    {"XUpdateMgr doItem isMugeMode return", "all", "mute mode: no channel was driven", false, true},
    {"update plugin, queue, has task, ignore", "all", "a drive was dropped, as a chain still ran",
     false, true},
    {"update plugin, pkg, check version ...", "package", "the user asked for a check"},
    {"update plugin, pkg, download pkg ...", "package", "the user asked for the download"},
    {"update plugin, pkg, install pkg ...", "package", "the user asked for the install"},
    {"update plugin, pkg, cancel download ...", "package", "the user cancelled the download"},
    {"update plugin, pkg, task condition, check times fail, so ignore.", "package",
     "not yet: the time gate was shut", false, true},
    {"update plugin, pkg, task check, check ...isAutoCheck: 1", "package", "a tick's check begins"},
    {"update plugin, pkg, task check, check ...isAutoCheck: 0", "package",
     "the user's check begins"},
    {"update plugin, pkg, task check, status:", "package", "status of the stored offer", true},
    {"update plugin, pkg, task check, installed notify.", "package",
     "the installation has worked; the user is told"},
    {"update plugin, pkg, task check, not logined or ui upgrade.", "package",
     "the installation has worked; nobody has to be told"},
    {"update plugin, pkg, task check, response, error :", "package",
     "the check has no usable answer, error", true},
    {"update plugin, pkg, task check, response:", "package", "the upgrade server answered", true},
    {"update plugin, pkg, task check, succ: 1", "package", "there is an offer"},
    {"update plugin, pkg, task check, succ: 0", "package",
     "no offer, an ignored one, or no answer"},
    {"update plugin, pkg, task download, check ...", "package", "the download begins"},
    {"update plugin, pkg, task download, no application folder.", "package",
     "nothing fetched: the path of the host's executable is too long"},
    {"update plugin, download, finished", "package", "the package is there; the install follows"},
    {"update plugin, pkg, task download, finished", "package",
     "the download has ended, without an install"},
    {"XTaskPkgInstall check isMugeMode return", "package", "mute mode: no install"},
    {"update plugin, pkg, task install, check ...", "package", "the install begins"},
    {"update plugin, pkg, task install, not auto update", "package",
     "no install: the user logged in installs by hand"},
    {"update plugin, pkg, task install, can't restart tray", "package",
     "no install: a window of the client is open"},
    {"update plugin, pkg, task install, fail data nil", "package", "no install: there is no offer"},
    {"update plugin, pkg, task install, finished", "package",
     "setup.exe was to be started; whether it was, the log does not tell"},
    {"update plugin, pkg, sender, upgrade info too long, length:", "package",
     "the process ended: the offer's text is too long, bytes", true},
    {"update plugin, file, check update ...", "file", "driven"},
    {"update plugin, file, check finished, so ignore.", "file", "it rests until the process ends"},
    {"update plugin, file, can't check, so ignore.", "file", "nothing done: nobody is logged in"},
    {"update plugin, file, task check, request:", "file", "the upgrade server is asked", true},
    {"update plugin, file, task check, response, error :", "file",
     "the check has no usable answer, error", true},
    {"update plugin, file, task check, response:", "file", "the upgrade server answered", true},
    {"update plugin, file, task check, response list null .", "file",
     "nothing on offer, or no answer"},
    {"update plugin, file, task download, no application folder.", "file",
     "nothing fetched: the path of the host's executable is too long"},
    {"update plugin, file, task download, local have name:", "file", "not fetched, it is there",
     true},
    {"update plugin, file, task download, download name:", "file", "its fetch begins, type", true},
    {"update plugin, file, check finished, succ:", "file", "the attempt has ended, 1 for success",
     true},
    {"update plugin, file, retry.", "file", "the next attempt comes in five minutes"},
    {"update plugin, other, check update, can't check, so ignore", "other",
     "nothing done: nobody is logged in", false, true},
    {"update plugin, other, task condition, check times fail, so ignore.", "other",
     "not yet: the time gate was shut", false, true},
    {"update plugin, other, task run, check.", "other",
     "orvdefender.exe --install was to be started; whether it was, the log does not tell"},
    {"update plugin, statistic, time ignore ...", "statistic", "not yet: the time gate was shut",
     false, true},
    {"update plugin, stored text is no json, key:", "all", "a stored text is no JSON, key", true},
    {"there is tarnlyoem.dll", "all", "the client is of the tarnly edition", false, true},
    {"load OrvSecurityver.dll failed. err:", "all", "OrvSecurityver.dll is not to be had, error",
     true},
    {"get channeltype process failed. err:", "all", "OrvSecurityver.dll has no channel type, error",
     true},
};

const ChannelForm* formOf(const std::string& text) {
    const auto found = std::find_if(
        std::begin(channelForms), std::end(channelForms), [&](const ChannelForm& form) {
            return text.compare(0, form.begins.size(), form.begins) == 0;
        });
    return found == std::end(channelForms) ? nullptr : found;
}

std::string valueOf(const std::string& text, const ChannelForm& form) {
    std::string value = form.hasValue ? trimmed(text.substr(form.begins.size())) : "";
    if (value.size() > longestValue) {
        std::size_t end = longestValue;
        while (end > 0 && (static_cast<unsigned char>(value[end]) & 0xC0U) == 0x80U) {
            --end; // not in the middle of a character
        }
        value.resize(end);
        value += "...";
    }
    return value;
}

bool begins(const std::string& text, std::string_view with) {
    return text.compare(0, with.size(), with) == 0;
}

/// What was seen of each start of the program, in their order.
std::vector<std::string> outcomesOf(const Start& start, const Knowledge& known) {
    std::vector<std::string> outcomes;
    for (const nlohmann::json& event : known.events) {
        const bool isIt =
            textOf(event, "kind") == "process" && textOf(event, "file") == start.file &&
            (start.parameters == nullptr || textOf(event, "parameters") == start.parameters);
        if (isIt) {
            const bool isStarted = event.value("started", nlohmann::json()) == true;
            outcomes.push_back(start.name + std::string(isStarted ? " was started"
                                                                  : " was not started: there is "
                                                                    "none, or it cannot run"));
        }
    }
    return outcomes;
}

/// The statistic channel says nothing when it reports.
bool isReport(const Log& log, std::size_t at) {
    constexpr std::string_view check = "update plugin, statistic, check update ...";
    if (log.lines[at].text.compare(0, check.size(), check) != 0) {
        return false;
    }
    for (std::size_t next = at + 1; next < log.lines.size(); ++next) {
        if (log.lines[next].thread == log.lines[at].thread) {
            return log.lines[next].text.find("time ignore") == std::string::npos;
        }
    }
    return false; // the log ends here, and leaves it open
}

void add(std::vector<ChannelStep>& steps, const ChannelStep& step, bool isEachTick) {
    const auto isSame = [&](const ChannelStep& other) {
        return other.channel == step.channel && other.words == step.words &&
               (isEachTick || other.value == step.value);
    };
    const auto last = std::find_if(steps.rbegin(), steps.rend(), [&](const ChannelStep& other) {
        return other.channel == step.channel;
    });
    const auto same = isEachTick ? std::find_if(steps.rbegin(), steps.rend(), isSame) : last;
    if (same != steps.rend() && isSame(*same)) {
        ++same->times;
    } else {
        steps.push_back(step);
    }
}

} // namespace

Starts startsOf(const Log& log, const Knowledge& known) {
    Starts starts;
    for (const Start& start : programStarts) {
        const std::vector<std::string> outcomes = outcomesOf(start, known);
        std::vector<std::size_t> lines;
        for (const LogLine& line : log.lines) {
            if (begins(line.text, start.begins)) {
                lines.push_back(line.number);
            }
        }
        // With another number of them it is open which belongs to which.
        for (std::size_t i = 0; i < lines.size() && lines.size() == outcomes.size(); ++i) {
            starts[lines[i]] = outcomes[i];
        }
    }
    return starts;
}

std::vector<ChannelStep> channelSteps(const Log& log, const Starts& starts, std::size_t first,
                                      std::size_t end) {
    std::vector<ChannelStep> steps;
    const auto from = std::partition_point(log.lines.begin(), log.lines.end(),
                                           [&](const LogLine& row) { return row.number < first; });
    for (auto i = static_cast<std::size_t>(from - log.lines.begin());
         i < log.lines.size() && log.lines[i].number < end; ++i) {
        const LogLine& line = log.lines[i];
        if (const ChannelForm* form = formOf(line.text)) {
            const auto start = starts.find(line.number);
            const std::string words = start == starts.end() ? form->words : start->second;
            const std::string value = valueOf(line.text, *form);
            add(steps, {form->channel, words, value, 1, line.number}, form->isEachTick);
        } else if (isReport(log, i)) {
            add(steps, {"statistic", "a report was handed over", "", 1, line.number}, false);
        }
    }
    const auto order = [](const std::string& channel) {
        return std::string_view("all package file other statistic").find(channel);
    };
    std::stable_sort(steps.begin(), steps.end(), [&](const ChannelStep& a, const ChannelStep& b) {
        return order(a.channel) < order(b.channel);
    });
    return steps;
}

} // namespace sandbox::report
