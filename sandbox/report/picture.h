#pragma once

#include <string>

#include "sandbox/report/timeline.h"

namespace sandbox::report {

/// The timeline as an SVG element: a lane for each thread, a bar for each request, transfer and
/// move ("bar request", ...), a mark for each other event ("mark fault", ...). Its colours are
/// those of the page that holds it.
std::string pictureOf(const Timeline& timeline);

/// `text` for HTML: in content and in attributes in double quotes.
std::string escaped(const std::string& text);

} // namespace sandbox::report
