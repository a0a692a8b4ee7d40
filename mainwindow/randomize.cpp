#include "mainwindow/randomize.h"

#include "catalogue/load_units.h"

#include <algorithm>
#include <cmath>

namespace vantrel {

bool Randomize(Definitions& defs, Messages& messages, Clock& clock, RandomSource& random) {
    if (messages.Show("This will overwrite current weights and limits.  Continue?", "Random",
                      MsgButtons::YesNo, MsgIcon::Question) != MsgAnswer::Yes)
        return false;
    const double weightMax = std::max(0, defs.Options.WeightMax);
    const double limitMax = std::max(0, defs.Options.LimitMax);
    double carry = 0;
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        // A fresh seed from the clock for every unit. The clock may read the
        // same for many units in a row, so the previous unit's last draw is
        // mixed in: equal clock readings still give different units.
        random.Seed(clock.SecondsSinceMidnight() + carry);
        vtUnit& unit = defs.Units[i];
        double r1 = random.Next();
        // From 1 to WeightMax (0 to WeightMax when the maximum is below 1).
        const double lowest = weightMax >= 1 ? 1 : 0;
        unit.Weight = RoundToHundredths(std::min(lowest + r1 * (weightMax - lowest), weightMax));
        double r2 = random.Next();
        double r3 = random.Next();
        // Two six-sided dice minus one, no higher than LimitMax.
        unit.Limit =
            static_cast<float>(std::min(std::floor(r3 * 6) + std::floor(r2 * 6) + 1, limitMax));
        carry = r3;
    }
    return true;
}

} // namespace vantrel
