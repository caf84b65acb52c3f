#pragma once

#include <cstddef>
#include <string>

#include "sandbox/check/mistake.h"

namespace sandbox::check {

/// A text with the line on which its author wrote it.
struct Located {
    std::string text;
    std::size_t line = 1;
};

} // namespace sandbox::check
