#pragma once

#include "sandbox/check/shape.h"

namespace sandbox::check {

/// The form of the platform's answers in a folder of materials, as far as it is read.
const Shape& offerShape();

} // namespace sandbox::check
