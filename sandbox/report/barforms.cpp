#include "sandbox/report/barforms.h"

#include <algorithm>
#include <array>
#include <utility>

#include "sandbox/report/saying.h"

namespace sandbox::report {
namespace {

constexpr std::array<BarForm, 7> barForms{{
    {"update plugin, kelvar http, request:", Kind::request, "", "kelvar"},
    {"update plugin, file, task check, request:", Kind::request, "check of the data files", "file",
     "/upgrade/v1/file/check"},
    {"update plugin, pkg, task check, request:", Kind::request, "check of the package", "pkg",
     "/upgrade/v2/upgrade/check"},
    {"update plugin, download task, url:", Kind::transfer, "", "kelvar"},
    {"update plugin, file, task download, download name:", Kind::transfer, "data file ", "file"},
    {"update plugin, pkg, task download, check ...", Kind::transfer, "the package"},
    {"update plugin, kelvar, task move, move:", Kind::move, ""},
}};

std::string lastPart(const std::string& text) {
    return text.substr(text.rfind('/') + 1);
}

} // namespace

const BarForm* barFormOf(const LogLine& line) {
    const auto found = std::find_if(barForms.begin(), barForms.end(), [&](const BarForm& form) {
        return line.text.starts_with(form.begins);
    });
    return found == barForms.end() ? nullptr : found;
}

std::string titleOf(const LogLine& line, const BarForm& form) {
    const std::string rest = trimmed(line.text.substr(form.begins.size()));
    switch (form.kind) {
    case Kind::move: {
        const std::size_t to = rest.find(" to ");
        return trimmed(to == std::string::npos ? rest : rest.substr(to + 4));
    }
    case Kind::request:
        return *form.title == '\0' ? lastPart(rest.substr(0, rest.find(" , data:"))) : form.title;
    default:
        return *form.title == '\0' ? lastPart(rest) : form.title + std::string(rest);
    }
}

std::string answeredChannel(const LogLine& line) {
    if (line.text.starts_with("update plugin, file, task check, response") ||
        line.text.starts_with("update plugin, file, check finished")) {
        return "file";
    }
    if (line.text.starts_with("update plugin, pkg, task check, response") ||
        line.text.starts_with("update plugin, pkg, task check, succ")) {
        return "pkg";
    }
    const auto saying = sayingOf(line.text);
    const bool isChain = saying && saying->says > Says::fetch && saying->says != Says::queueEnds &&
                         saying->says != Says::transferFailed && saying->says != Says::windowOpen &&
                         saying->says != Says::fileListFailed;
    return isChain ? "kelvar" : "";
}

std::string begunChannel(const LogLine& line) {
    constexpr std::pair<std::string_view, const char*> chains[] = {
        {"update plugin, kelvar, task fetch, check ...", "kelvar"},
        {"update plugin, file, task check ...", "file"},
        {"update plugin, pkg, task check, check ...", "pkg"}};
    for (const auto& [begin, channel] : chains) {
        if (line.text.starts_with(begin)) {
            return channel;
        }
    }
    return "";
}

} // namespace sandbox::report
