#pragma once

namespace sandbox {

/// Whether a call of runProcess is under way. Any thread.
bool startsProgram();

} // namespace sandbox
