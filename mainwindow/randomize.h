// The Randomize command: random weights and limits for every unit.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"

namespace vantrel {

// Every unit gets a Weight from 1 to WeightMax in hundredths and a Limit
// from 1 to 11 (two dice), both kept within the options' maxima.
// Asks first; returns true when the units were changed (the caller then
// re-selects the current side).
bool Randomize(Definitions& defs, Messages& messages, Clock& clock, RandomSource& random);

} // namespace vantrel
