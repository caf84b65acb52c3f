#pragma once

#include <cstddef>
#include <string>

#include "sandbox/report/kelvarrun.h"

namespace sandbox::report {

/// Adds a question to the run, with what its body tells: who asks, for what. A body that is cut
/// or no JSON tells nothing.
void ask(KelvarRun& run, const std::string& url, const std::string& body, std::size_t line);

/// The question that a line "... nil ." says to have no answer.
std::string unansweredOf(const std::string& line);

/// Why the run ended at that question, by its last one in the log.
std::string noAnswerWords(const KelvarRun& run, const std::string& unanswered);

} // namespace sandbox::report
