#pragma once

namespace sandbox {

/// From now on, until the process ends, a thread answers every message box of this process
/// with OK and tells title and text on stderr: nobody sits in front of a stand-in. On
/// posix there are none, and nothing is done.
void answerMessageBoxes();

} // namespace sandbox
