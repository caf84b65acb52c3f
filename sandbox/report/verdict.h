#pragma once

#include <string>

#include "sandbox/report/kelvarrun.h"
#include "sandbox/report/standing.h"

/// Words that the tests of a material are told with.
namespace sandbox::report::verdict {

inline constexpr const char* fromLog = "log";
inline constexpr const char* fromOrder = "order of the tests";
inline constexpr const char* fromScenario = "scenario";
inline constexpr const char* passed = "passed";
inline constexpr const char* failed = "failed";
inline constexpr const char* notAsked = "not asked";
inline constexpr const char* untold = "untold";

/// "log, scenario"; each source once.
inline std::string withSource(const std::string& from, const std::string& more) {
    return more.empty() || from.find(more) != std::string::npos ? from : from + ", " + more;
}

/// What stands on disk, as the right side of a test; empty where it is not told.
inline std::string wordsOf(const Standing::Found& found) {
    if (found.file == Standing::Found::File::absent) {
        return "no such file";
    }
    if (found.file == Standing::Found::File::untold || !found.version) {
        return "";
    }
    return found.version->empty() ? "no version" : *found.version;
}

} // namespace sandbox::report::verdict
