#pragma once

#include <string>
#include <vector>

#include "sandbox/faults/fault.h"
#include "soak/findings.h"

/// What a soak must have done to tell anything: a host that rests does not grow.
namespace soak {

/// What was not done, in words.
std::vector<std::string> unmetDemands(const Findings& findings);

/// The faults of a list of the programme. Throws std::runtime_error when it is wrong.
std::vector<sandbox::Fault> faultsOf(const std::string& list);

} // namespace soak
