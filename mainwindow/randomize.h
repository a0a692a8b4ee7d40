// The Randomize command: random weights and limits for every unit.
#pragma once

#include "catalogue/definitions.h"
#include "startup/ports.h"

namespace vantrel {

// Asks first; returns true when the units were changed (the caller then
// re-selects the current side).
bool Randomize(Definitions& defs, Messages& messages, Clock& clock, RandomSource& random);

} // namespace vantrel
