#pragma once

#include <filesystem>

#include "sandbox/doctor/finding.h"
#include "sandbox/doctor/places.h"

namespace sandbox::doctor {

/// Examines a client and writes nothing, neither in its folder nor elsewhere. What is damaged
/// or strange becomes a finding. Reads every file of the client once. One thread.
Report examine(const Places& places);

} // namespace sandbox::doctor
