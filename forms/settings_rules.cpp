#include "forms/settings_rules.h"

#include "base/text.h"

namespace vantrel {

bool IsAcceptableAIName(const std::string& name) {
    return !TrimSpaces(name).empty();
}

void ResetUnitsForNewAI(Definitions& defs) {
    for (vtUnit& unit : defs.Units) {
        unit.Weight = 0.0f;
        unit.Limit = 0.0f;
        unit.Include = true;
    }
}

} // namespace vantrel
