#include "sandbox/report/explanationjson.h"

#include "sandbox/report/section.h"

namespace sandbox::report {
namespace {

using Json = nlohmann::json;

Json orNull(const std::string& text) {
    return text.empty() ? Json() : Json(text);
}

Json timeOf(const std::optional<std::int64_t>& at, const Log& log) {
    return at && log.hasTimes ? Json(timeText(*at, log.hasDates)) : Json();
}

Json testJson(const Test& test) {
    return {{"test", test.what},           {"left", orNull(test.left)},
            {"operator", orNull(test.op)}, {"right", orNull(test.right)},
            {"verdict", test.verdict},     {"from", test.from}};
}

const char* outcomeOf(Question::Outcome outcome) {
    constexpr const char* names[] = {"untold", "answered", "refused", "empty"};
    return names[static_cast<std::size_t>(outcome)];
}

Json questionJson(const Question& question) {
    return {{"name", question.name},
            {"url", question.url},
            {"outcome", outcomeOf(question.outcome)},
            {"error", orNull(question.error)},
            {"httpStatus", orNull(question.status)},
            {"fault", orNull(question.fault)},
            {"line", question.line}};
}

template <class Items, class Convert>
Json listOf(const Items& items, Convert convert) {
    Json list = Json::array();
    for (const auto& item : items) {
        list.push_back(convert(item));
    }
    return list;
}

Json stepJson(const ChannelStep& step) {
    return {{"channel", step.channel},
            {"what", step.words},
            {"value", orNull(step.value)},
            {"times", step.times},
            {"line", step.line}};
}

} // namespace

Json toJson(const Material& row) {
    return {{"name", titleOf(row)},
            {"id", orNull(row.id)},
            {"nameFrom", orNull(row.nameFrom)},
            {"module", orNull(row.module)},
            {"version", orNull(row.version)},
            {"target", orNull(row.target)},
            {"group", row.group ? Json(*row.group) : Json()},
            {"md5", orNull(row.md5)},
            {"fileId", orNull(row.fileId)},
            {"decision", row.decision},
            {"reason", orNull(row.reason)},
            {"fault", orNull(row.fault)},
            {"notes", row.notes},
            {"tests", listOf(row.tests, testJson)}};
}

Json toJson(const KelvarRun& run, const Explanation& told) {
    Json materials = Json::array();
    for (const std::size_t at : run.order) {
        materials.push_back(toJson(run.materials[at]));
    }
    const auto program = [](const Program& asked) {
        return Json{
            {"program", asked.name}, {"parameters", asked.parameters}, {"outcome", asked.outcome}};
    };
    return {{"number", run.number},
            {"begin", timeOf(run.begin, told.log)},
            {"end", timeOf(run.end, told.log)},
            {"firstLine", run.firstLine},
            {"lastLine", run.lastLine},
            {"beginsInMidRun", run.beginsInMidRun},
            {"success", run.success ? Json(*run.success) : Json()},
            {"endWords", run.endWords},
            {"channel", orNull(run.channel)},
            {"clientVersion", orNull(run.clientVersion)},
            {"targetVersion", orNull(run.targetVersion)},
            {"questions", listOf(run.questions, questionJson)},
            {"materials", materials},
            {"programs", listOf(run.programs, program)},
            {"versions", run.versions},
            {"faults", run.faults},
            {"notes", run.notes},
            {"channels",
             listOf(channelSteps(told.log, told.starts, run.toldFrom, run.toldTo), stepJson)}};
}

Json logJson(const Explanation& told) {
    const Log& log = told.log;
    return {{"lines", log.lines.size()},     {"otherLines", log.others},
            {"repairedLines", log.repaired}, {"endsInMidLine", log.endsInMidLine},
            {"hasTimes", log.hasTimes},      {"hasThreads", log.hasThreads},
            {"shutGates", told.shutGates},   {"readBeside", told.known.sources},
            {"notRead", told.known.missing}};
}

} // namespace sandbox::report
