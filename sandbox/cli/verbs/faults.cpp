#include "sandbox/cli/verbs/faults.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <stdexcept>

#include "sandbox/faults/faultkind.h"

namespace sandbox {
namespace {

using Json = nlohmann::json;

const char* wordOf(ParameterKind kind) {
    switch (kind) {
    case ParameterKind::number:
        return "number";
    case ParameterKind::text:
        return "text";
    default:
        return "true or false";
    }
}

std::string defaultWords(const Parameter& parameter) {
    if (parameter.isOptional) {
        return "may be left out";
    }
    return *parameter.byDefault == '\0' ? "" : "default " + std::string(parameter.byDefault);
}

Json jsonOf(const FaultKind& kind) {
    Json parameters = Json::array();
    for (const Parameter& parameter : kind.parameters) {
        Json one{{"name", parameter.name},
                 {"kind", wordOf(parameter.kind)},
                 {"meaning", parameter.meaning},
                 {"optional", parameter.isOptional || *parameter.byDefault != '\0'}};
        if (*parameter.byDefault != '\0') {
            one["default"] = Json::parse(parameter.byDefault);
        }
        if (parameter.kind == ParameterKind::number) {
            one["least"] = parameter.range.least;
            one["most"] = parameter.range.most;
        }
        parameters.push_back(std::move(one));
    }
    return {{"fault", kind.name},
            {"on", placeWords(kind.places)},
            {"does", kind.words},
            {"parameters", std::move(parameters)},
            {"example", kind.example}};
}

void show(const FaultKind& kind, Console& console) {
    console.heading(kind.name);
    console.line(std::string("  ") + kind.words);
    console.line("  on         " + placeWords(kind.places));
    for (const Parameter& parameter : kind.parameters) {
        const std::string ending = defaultWords(parameter);
        const std::string range =
            parameter.kind == ParameterKind::number ? " of " + rangeWords(parameter.range) : "";
        console.line(std::string("  ") + parameter.name + ", " + wordOf(parameter.kind) + range +
                     ": " + parameter.meaning + (ending.empty() ? "" : " (" + ending + ")"));
    }
    console.line(std::string("  example    ") + kind.example);
}

int listFaults(const std::vector<std::string>& asked, Output& output) {
    Json list = Json::array();
    for (const std::string& name : asked) {
        if (findFaultKind(name) == nullptr) {
            throw std::runtime_error("there is no fault \"" + name + "\"; known are " +
                                     faultNames(~0U));
        }
    }
    for (const FaultKind& kind : faultKinds()) {
        if (asked.empty() || std::find(asked.begin(), asked.end(), kind.name) != asked.end()) {
            show(kind, output.console());
            list.push_back(jsonOf(kind));
        }
    }
    output.result({{"faults", std::move(list)}});
    return exitAsExpected;
}

} // namespace

Verb addFaults(CLI::App& app) {
    CLI::App* command = app.add_subcommand(
        "faults", "List the faults that a scenario can name: what each does, where it may stand, "
                  "what it takes");
    const auto asked = std::make_shared<std::vector<std::string>>();
    command->add_option("fault", *asked, "These only")->type_name("FAULT");
    endHelp(command, {{"faults", "faults cut silent"}, "always", ""});
    return {command, [asked](Output& output) {
                return listFaults(*asked, output);
            }};
}

} // namespace sandbox
