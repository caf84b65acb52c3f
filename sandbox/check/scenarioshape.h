#pragma once

#include "sandbox/check/shape.h"

namespace sandbox::check {

/// The format of a scenario, as sandbox/scenarios/README.md describes it.
const Shape& scenarioShape();

/// The modules of every client.
Words moduleWords();

/// The format of an expected state of a material, by its word.
Words stateWords();
Words reasonWords();

} // namespace sandbox::check
