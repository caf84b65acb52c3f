#include "sandbox/report/barreader.h"

#include <algorithm>

#include "sandbox/report/barforms.h"
#include "sandbox/report/plannedmaterials.h"
#include "sandbox/report/saying.h"
#include "sandbox/report/spans.h"

namespace sandbox::report {
namespace {

using Json = nlohmann::json;

/// Lines that a move writes behind its first one.
bool isOfMove(Says says) {
    return says >= Says::targetInUse && says <= Says::scheduleFailed;
}

bool isFailure(const LogLine& line) {
    return line.text.starts_with("update plugin, download task, perform err") ||
           line.text.starts_with("update plugin, download task, open err") ||
           line.text.starts_with("update plugin, move task, move src to dst error") ||
           line.text.starts_with("update plugin, move task, peeding src to dst error");
}

} // namespace

std::size_t BarReader::add(Kind kind, Lane lane, std::int64_t start, const LogLine& line,
                           const std::string& title) {
    bars.push_back({kind, lane, start, *line.at, true, false, title, line.number});
    return bars.size() - 1;
}

void BarReader::request(const LogLine& line, Lane lane) {
    const BarForm& form = *barFormOf(line);
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

void BarReader::abandon(std::size_t bar, const LogLine& line) {
    bars[bar].end = *line.at;
    abandoned.insert(bar);
}

void BarReader::abandonChain(const LogLine& line) {
    const std::string channel = begunChannel(line);
    if (channel.empty()) {
        return;
    }
    if (const auto found = waiting.find(channel); found != waiting.end()) {
        abandon(found->second, line);
        waiting.erase(found);
    }
    for (auto& [name, thread] : threads) {
        if (thread.running && thread.channel == channel) {
            if (bars[*thread.running].isOpen) {
                abandon(*thread.running, line);
            }
            thread.running.reset();
        }
    }
}

bool BarReader::begin(const LogLine& line, Lane lane, Thread& thread) {
    const BarForm* form = barFormOf(line);
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
    thread.channel = form->channel;
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
    abandonChain(line);
    answer(line);
    goOn(line, thread);
    begin(line, lane, thread);
    thread.before = *line.at;
    thread.isUsed = true;
    last = std::max(last, *line.at);
}

void BarReader::endBySight(const Knowledge& known) {
    const std::vector<std::int64_t> stops = hostEnds(known);
    // How many processes ended ahead of it: what was asked and its answer have the same number.
    const auto sittingOf = [&](std::int64_t at) {
        return std::upper_bound(stops.begin(), stops.end(), at) - stops.begin();
    };
    auto next = sent.begin();
    for (const Json& event : known.events) {
        const auto at = known.onLogClock(event["at"].get<std::int64_t>());
        if (textOf(event, "kind") != "http" || textOf(event, "phase") != "answered" || !at) {
            continue;
        }
        const auto sitting = sittingOf(*at);
        while (next != sent.end() && (next->isOver || sittingOf(bars[next->bar].start) < sitting)) {
            ++next;
        }
        const std::string url = textOf(event, "url");
        const auto found = std::find_if(next, sent.end(), [&](const Sent& request) {
            return !request.isOver && bars[request.bar].start <= *at + 1 &&
                   url.ends_with(request.url);
        });
        if (found != sent.end()) {
            TimelineEvent& bar = bars[found->bar];
            bar.end = std::max(bar.start, *at);
            bar.isOpen = false;
            found->isOver = true;
        }
    }
}

std::vector<TimelineEvent> BarReader::end(const Knowledge& known) {
    endBySight(known);
    for (std::size_t i = 0; i < bars.size(); ++i) {
        TimelineEvent& bar = bars[i];
        const bool isLast = bar.isOpen && abandoned.count(i) == 0;
        bar.end = std::max(bar.start, isLast ? last : bar.end); // a clock may be set back
    }
    return std::move(bars);
}

} // namespace sandbox::report
