#include "forms/settings_rules.h"

#include "base/text.h"

namespace vantrel {

bool IsAcceptableAIName(const std::string& name) {
    return !TrimSpaces(name).empty();
}

void ResetUnitsForNewAI(Definitions& defs) {
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        defs.Units[i].Weight = 0.0f;
        defs.Units[i].Limit = 0.0f;
        defs.Units[i].Include = true;
    }
}

} // namespace vantrel
