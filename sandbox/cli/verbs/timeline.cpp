#include "sandbox/cli/verbs/timeline.h"

#include <CLI/CLI.hpp>
#include <stdexcept>

#include "sandbox/cli/verbs/logsource.h"
#include "sandbox/common/clientpath.h"
#include "sandbox/platform/filewrites.h"
#include "sandbox/report/axis.h"
#include "sandbox/report/page.h"
#include "sandbox/report/timeline.h"

namespace sandbox {
namespace {

using report::Timeline;
using report::TimelineEvent;

struct TimelineOptions {
    LogSource source;
    std::string page;
    bool ticks = false;
};

void print(const Timeline& timeline, bool ticks, Console& console) {
    std::vector<std::vector<std::string>> rows;
    for (const TimelineEvent& event : timeline.events) {
        if (event.kind == report::Kind::tick && !ticks) {
            continue;
        }
        const std::string duration = event.isBar() ? report::durationText(event.duration()) : "";
        rows.push_back({report::timeText(event.start, false), (event.isOpen ? "> " : "") + duration,
                        report::titleOf(event.lane), report::nameOf(event.kind),
                        event.title + (event.hasFailed ? " (failed)" : "")});
    }
    console.table({"time", "duration", "lane", "kind", "what"}, rows);
}

nlohmann::json resultOf(const Timeline& timeline) {
    nlohmann::json events = nlohmann::json::array();
    for (const TimelineEvent& event : timeline.events) {
        events.push_back({{"at", report::timeText(event.start, timeline.hasDates)},
                          {"ms", event.start - timeline.begin},
                          {"duration", event.isBar() ? nlohmann::json(event.duration()) : nullptr},
                          {"isOpen", event.isOpen},
                          {"hasFailed", event.hasFailed},
                          {"lane", report::titleOf(event.lane)},
                          {"kind", report::nameOf(event.kind)},
                          {"what", event.title},
                          {"line", event.line == 0 ? nullptr : nlohmann::json(event.line)}});
    }
    return {{"events", events},
            {"requests", timeline.count(report::Kind::request)},
            {"transfers", timeline.count(report::Kind::transfer)},
            {"moves", timeline.count(report::Kind::move)}};
}

int tell(const TimelineOptions& options, Output& output) {
    const report::Explanation told = explain(options.source);
    const Timeline timeline = report::timelineOf(told);
    if (options.page.empty()) {
        print(timeline, options.ticks, output.console());
    } else {
        const std::string page = report::pageOf(timeline, told, options.source.title());
        if (!replaceFile(pathOf(options.page), page, Durability::synced)) {
            throw std::runtime_error("cannot write " + options.page);
        }
        output.console().line("the page is " + options.page);
    }
    output.result(resultOf(timeline));
    return exitAsExpected;
}

} // namespace

Verb addTimeline(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "timeline", "Tell what happened when: each request, transfer, move, notification and "
                    "fault, as a list or as one page for a browser");
    const auto options = std::make_shared<TimelineOptions>();
    addLogSource(command, options->source);
    command->add_option("--html", options->page, "Write the page with its picture to FILE")
        ->type_name("FILE");
    command->add_flag("--ticks", options->ticks, "List the host's ticks too");
    endHelp(command, {{"timeline --folder build/demo",
                       "timeline --folder build/demo --html build/demo/timeline.html"},
                      "it is told",
                      ""});
    return {command, [options](Output& output) {
                return tell(*options, output);
            }};
}

} // namespace sandbox
