#include "support/dialog_fixtures.h"

namespace vantrel::testing {

int AddUnit(Definitions& defs, const std::string& side, const std::string& name,
            const std::string& tedClass, float weight, float limit) {
    const int index = defs.Units.UBound() + 1;
    defs.Units.Preserve(index);
    vtUnit& unit = defs.Units[index];
    unit.Name = name;
    unit.UnitName = name;
    unit.TEDClass = tedClass;
    unit.Side = side;
    unit.Weight = weight;
    unit.Limit = limit;
    unit.Build = true;
    unit.Include = true;
    AddSide(defs.Races, side);
    return index;
}

void SetSavedValues(Definitions& defs, float weight, float limit) {
    defs.SavedUnits.Dim(defs.Units.UBound());
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        defs.SavedUnits[i] = defs.Units[i];
        defs.SavedUnits[i].Weight = weight;
        defs.SavedUnits[i].Limit = limit;
    }
}

} // namespace vantrel::testing
