// Placeholder until the Randomize command lands.
#include "mainwindow/randomize.h"

namespace vantrel {

bool Randomize(Definitions&, Messages&, Clock&, RandomSource&) { return false; }

} // namespace vantrel
