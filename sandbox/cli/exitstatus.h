#pragma once

namespace sandbox {

/// Exit statuses of every verb; what each means there is in its help.
inline constexpr int exitAsExpected = 0;    ///< also: no findings
inline constexpr int exitDifferent = 1;     ///< something differs, or there are findings
inline constexpr int exitSandboxFailed = 2; ///< it failed, was called wrongly, or could not tell

} // namespace sandbox
