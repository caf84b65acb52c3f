#pragma once

#include <cstddef>
#include <string>

#include "sandbox/report/kelvarrun.h"

namespace sandbox::report {

/// Adds a question to the run, with what its body tells: who asks, for what. A body that is cut
/// or no JSON tells nothing.
void ask(KelvarRun& run, const std::string& url, const std::string& body, std::size_t line);

/// Why a run ended at a question without a usable answer, by the run's last question.
std::string noAnswerWords(const KelvarRun& run);

} // namespace sandbox::report
