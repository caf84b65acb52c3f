#pragma once

#include <set>
#include <string>

#include "sandbox/check/located.h"

namespace sandbox::check {

/// An execution text as the client reads it: entries joined by ")&&(", in each a program and
/// its parameters in double quotes. `programs` are the names, in lower case, that the client
/// will have; empty when they are not known.
void checkExec(const Located& exec, const std::set<std::string>& programs, Mistakes& mistakes);

} // namespace sandbox::check
