#pragma once

#include <vector>

#include "crash/judge.h"

/// The parts of a judgement beside where the trial has come to. Each adds what it finds.
namespace crash {

/// Whether the disturbance has happened, and each session ended as it must.
void judgeDisturbance(const Trial& trial, std::vector<Finding>& findings);

/// What must hold at the break and in each later moment: a target has its old bytes, its new ones,
/// or none with the old ones aside.
void judgeMoments(const Trial& trial, std::vector<Finding>& findings);

/// Whether one more run changes nothing any more.
void judgeRest(const Trial& trial, std::vector<Finding>& findings);

} // namespace crash
