#pragma once

namespace sandbox {

/// What standard output can show.
struct Terminal {
    bool interactive = false; ///< a line may be written over and over
    bool unicode = false;     ///< characters beyond ASCII
};

Terminal standardOutput();

} // namespace sandbox
