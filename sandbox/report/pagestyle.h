#pragma once

namespace sandbox::report {

/// The style sheet of the timeline's page.
extern const char* const pageStyle;

} // namespace sandbox::report
