#pragma once

#include <vector>

#include "crash/judge.h"

/// The parts of a judgement. Each adds what it finds.
namespace crash {

/// Whether the disturbance has happened, and each session ended as it must.
void judgeDisturbance(const Trial& trial, std::vector<Finding>& findings);

/// What must hold at the break and in each later moment: a target has its old bytes, its new ones,
/// or none with the old ones aside. The same bytes are told of once.
void judgeMoments(const Trial& trial, std::vector<Finding>& findings);

/// Where the trial has come to: targets, lists, versions, programs and all other files.
void judgeEnd(const Trial& trial, std::vector<Finding>& findings);

/// Whether one more run changes nothing any more, and each restart did all that it was to do.
void judgeRest(const Trial& trial, std::vector<Finding>& findings);

} // namespace crash
