#pragma once

#include <cstddef>

namespace sandbox {

/// When colours are wanted.
enum class ColorWish { whereSeen, always, never };

/// What standard output can show.
struct Terminal {
    bool interactive = false; ///< a line may be written over and over
    bool unicode = false;     ///< characters beyond ASCII
    bool color = false;       ///< colours and bold
    std::size_t width = 0;    ///< columns; 0 is no limit
};

/// Of this process, as it is now. Without a terminal there is no limit of width and nothing is
/// written over. By `whereSeen` a terminal has colours unless NO_COLOR is set or TERM is "dumb";
/// one without colours gets no control sequence at all.
Terminal standardOutput(ColorWish wish);

} // namespace sandbox
