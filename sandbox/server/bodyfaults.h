#pragma once

#include <optional>
#include <string>

#include "sandbox/faults/fault.h"

namespace sandbox {

/// What a request is answered.
struct Answer {
    int status = 200;
    std::string type;
    std::string body;

    bool operator==(const Answer&) const = default;
};

/// The answer as the fault has it; the right one for a fault of the connection alone. Nothing
/// when the fault cannot come about with that answer: it has no numbers, or ends ahead of the
/// byte that the fault begins with.
std::optional<Answer> spoilt(const Fault& fault, const Answer& right);

} // namespace sandbox
