#include "sandbox/report/barreader.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "sandbox/report/plannedmaterials.h"
#include "sandbox/report/saying.h"

namespace sandbox::report {
namespace {

using Json = nlohmann::json;

/// A line that begins a bar, and how the bar is called in front of the line's value.
struct Form {
    std::string_view begins;
    Kind kind;
    const char* title;
    const char* channel = "";
    const char* url = ""; ///< what its address ends with, where the line does not tell it
};

constexpr std::array<Form, 7> forms{{
    {"update plugin, kelvar http, request:", Kind::request, "", "kelvar"},
    {"update plugin, file, task check, request:", Kind::request, "check of the data files", "file",
     "/upgrade/v1/file/check"},
    {"update plugin, pkg, task check, request:", Kind::request, "check of the package", "pkg",
     "/upgrade/v2/upgrade/check"},
    {"update plugin, download task, url:", Kind::transfer, ""},
    {"update plugin, file, task download, download name:", Kind::transfer, "data file "},
    {"update plugin, pkg, task download, check ...", Kind::transfer, "the package"},
    {"update plugin, kelvar, task move, move:", Kind::move, ""},
}};

bool begins(const LogLine& line, std::string_view with) {
    return line.text.compare(0, with.size(), with) == 0;
}

const Form* formOf(const LogLine& line) {
    const auto found = std::find_if(forms.begin(), forms.end(),
                                    [&](const Form& form) { return begins(line, form.begins); });
    return found == forms.end() ? nullptr : found;
}

std::string lastElement(const std::string& text) {
    return text.substr(text.rfind('/') + 1);
}

std::string titleOf(const LogLine& line, const Form& form) {
    const std::string rest = trimmed(line.text.substr(form.begins.size()));
    switch (form.kind) {
    case Kind::move: {
        const std::size_t to = rest.find(" to ");
        return trimmed(to == std::string::npos ? rest : rest.substr(to + 4));
    }
    case Kind::request:
        return *form.title == '\0' ? lastElement(rest.substr(0, rest.find(" , data:")))
                                   : form.title;
    default:
        return *form.title == '\0' ? lastElement(rest) : form.title + std::string(rest);
    }
}

/// The channel whose request a line ends, by the log alone.
std::string answeredChannel(const LogLine& line) {
    if (begins(line, "update plugin, file, task check, response") ||
        begins(line, "update plugin, file, check finished")) {
        return "file";
    }
    if (begins(line, "update plugin, pkg, task check, response") ||
        begins(line, "update plugin, pkg, task check, succ")) {
        return "pkg";
    }
    const auto saying = sayingOf(line.text);
    const bool isChain = saying && saying->says > Says::fetch && saying->says != Says::queueEnds &&
                         saying->says != Says::transferFailed && saying->says != Says::windowOpen &&
                         saying->says != Says::fileListFailed;
    return isChain ? "kelvar" : "";
}

/// Lines that a move writes behind its first one.
bool isOfMove(Says says) {
    return says >= Says::targetInUse && says <= Says::scheduleFailed;
}

bool isFailure(const LogLine& line) {
    return begins(line, "update plugin, download task, perform err") ||
           begins(line, "update plugin, download task, open err") ||
           begins(line, "update plugin, move task, move src to dst error") ||
           begins(line, "update plugin, move task, peeding src to dst error");
}

} // namespace

std::size_t BarReader::add(Kind kind, Lane lane, std::int64_t start, const LogLine& line,
                           const std::string& title) {
    bars.push_back({kind, lane, start, *line.at, true, false, title, line.number});
    return bars.size() - 1;
}

void BarReader::request(const LogLine& line, Lane lane) {
    const Form& form = *formOf(line);
    const std::size_t bar = add(form.kind, lane, *line.at, line, titleOf(line, form));
    const std::string rest = trimmed(line.text.substr(form.begins.size()));
    sent.push_back({bar, *form.url == '\0' ? rest.substr(0, rest.find(" , data:")) : form.url});
    waiting[form.channel] = bar;
}

void BarReader::answer(const LogLine& line) {
    const auto found = waiting.find(answeredChannel(line));
    if (found == waiting.end()) {
        return;
    }
    TimelineEvent& bar = bars[found->second];
    bar.end = *line.at;
    bar.isOpen = false;
    bar.hasFailed = line.text.find("response error") != std::string::npos ||
                    line.text.find("response, error") != std::string::npos;
    waiting.erase(found);
}

bool BarReader::begin(const LogLine& line, Lane lane, Thread& thread) {
    const Form* form = formOf(line);
    if (form == nullptr) {
        return false;
    }
    if (form->kind == Kind::request) {
        request(line, lane);
        return true;
    }
    const bool isMove = form->kind == Kind::move;
    const std::int64_t start = isMove && thread.isUsed ? thread.before : *line.at;
    thread.running = add(form->kind, lane, start, line, titleOf(line, *form));
    bars.back().isOpen = !isMove;
    return true;
}

// A transfer ends with the next line of its thread; a move goes on with lines of its own.
void BarReader::goOn(const LogLine& line, Thread& thread) {
    if (!thread.running) {
        return;
    }
    TimelineEvent& bar = bars[*thread.running];
    const auto saying = sayingOf(line.text);
    const bool isOwn = bar.kind == Kind::move && saying && isOfMove(saying->says);
    if (bar.kind == Kind::transfer || isOwn) {
        bar.end = *line.at;
        bar.isOpen = false;
        bar.hasFailed = bar.hasFailed || isFailure(line);
    }
    if (!isOwn) {
        thread.running.reset();
    }
}

void BarReader::see(const LogLine& line, Lane lane) {
    Thread& thread = threads[line.thread];
    answer(line);
    goOn(line, thread);
    begin(line, lane, thread);
    thread.before = *line.at;
    thread.isUsed = true;
    last = std::max(last, *line.at);
}

void BarReader::endBySight(const Knowledge& known) {
    auto next = sent.begin();
    for (const Json& event : known.events) {
        const auto at = known.onLogClock(event["at"].get<std::int64_t>());
        if (textOf(event, "kind") != "http" || textOf(event, "phase") != "answered" || !at) {
            continue;
        }
        const std::string url = textOf(event, "url");
        const auto found = std::find_if(next, sent.end(), [&](const Sent& request) {
            return !request.isAnswered && bars[request.bar].start <= *at + 1 &&
                   url.size() >= request.url.size() &&
                   url.compare(url.size() - request.url.size(), request.url.size(), request.url) ==
                       0;
        });
        if (found != sent.end()) {
            TimelineEvent& bar = bars[found->bar];
            bar.end = std::max(bar.start, *at);
            bar.isOpen = false;
            found->isAnswered = true;
        }
        while (next != sent.end() && next->isAnswered) {
            ++next;
        }
    }
}

std::vector<TimelineEvent> BarReader::end(const Knowledge& known) {
    endBySight(known);
    for (TimelineEvent& bar : bars) {
        bar.end = std::max(bar.start, bar.isOpen ? last : bar.end); // a clock may be set back
    }
    return std::move(bars);
}

} // namespace sandbox::report
