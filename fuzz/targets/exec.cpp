#include <set>

#include "fuzz/fuzz.h"
#include "support/fakehost.h"
#include "updatekelvar/data/exec/execmgr.h"
#include "utils/utils.h"

// A material's "exec" text, and the programs that the client starts for it.

namespace {

XExecMap programsOf(const std::string& text) {
    XMaterialExec exec;
    fuzz::require((exec.parseExec(text) == -1) == text.empty(), "-1 for no text alone");
    XExecMap programs;
    exec.getExecMap(programs);
    return programs;
}

bool isValueOf(const std::string& text, const std::string& value) {
    return value.empty() ||
           (value.find('"') == value.npos && text.find("\"" + value + "\"") != text.npos);
}

std::size_t countEntries(const std::string& text) {
    std::size_t count = text.empty() ? 0 : 1;
    for (std::size_t at = text.find(")&&("); at != text.npos; at = text.find(")&&(", at + 1)) {
        ++count;
    }
    return count;
}

/// The programs as the platform would write them.
std::string textOf(const XExecMap& programs) {
    std::string text;
    for (const auto& [process, params] : programs) {
        for (const std::string& param : params) {
            text += text.empty() ? "(" : "&&(";
            text.append("%process%=\"").append(process).append("\" ");
            text.append("%param%=\"").append(param).append("\")");
        }
    }
    return text;
}

void startsEachOnce(const XExecMap& programs) {
    FakeHost host;
    XExecMgr manager;
    manager.addExec(programs);
    manager.addExec(programs); // as a second row with the same programs
    manager.execAll();
    std::set<std::pair<std::string, std::string>> wanted;
    for (const auto& [process, params] : programs) {
        for (const std::string& param : params) {
            wanted.emplace(utils::toLower(process), param);
        }
    }
    fuzz::require(host.startedPrograms.size() == wanted.size(), "each program starts once");
    bool protects = false;
    for (const auto& [file, parameters] : host.startedPrograms) {
        fuzz::require(file == L"orvprotect.exe" || !protects, "the protection program comes last");
        protects = file == L"orvprotect.exe";
    }
}

} // namespace

FUZZ_TARGET(exec) {
    const XExecMap programs = programsOf(input);
    std::size_t count = 0;
    bool isPlain = true; // a placeholder within a value is taken for one
    for (const auto& [process, params] : programs) {
        for (const std::string& param : params) {
            fuzz::require(isValueOf(input, process) && isValueOf(input, param),
                          "values stand in quotes in the text");
            isPlain = isPlain && (process + param).find('%') == std::string::npos;
            ++count;
        }
    }
    fuzz::require(count <= countEntries(input), "an entry gives one program at most");
    fuzz::require(!isPlain || programsOf(textOf(programs)) == programs,
                  "programs that are written read back the same");
    startsEachOnce(programs);
}
