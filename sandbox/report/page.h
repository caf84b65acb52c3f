#pragma once

#include <string>

#include "sandbox/report/explanation.h"
#include "sandbox/report/timeline.h"

namespace sandbox::report {

/// One HTML file that needs no other: the picture, a legend, and all events as a table. No
/// script; light or dark as the reader's system is; for paper and for small screens.
std::string pageOf(const Timeline& timeline, const Explanation& told, const std::string& source);

} // namespace sandbox::report
