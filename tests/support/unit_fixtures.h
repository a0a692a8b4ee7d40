// Catalogues made in code for the card, board and Randomize tests.
#pragma once

#include "catalogue/definitions.h"
#include "mainwindow/board_rules.h"
#include "support/test_support.h"

#include <string>

namespace vantrel::test {

// Appends a unit that may be built (UnitName "U" and its index) and, when its side is new, a
// race; returns the unit's index.
inline int AddUnit(Definitions& defs, const std::string& side, const std::string& name,
                   const std::string& tedClass, float weight = 0, float limit = 0,
                   bool include = true) {
    const int i = defs.Units.UBound() + 1;
    defs.Units.Preserve(i);
    vtUnit& u = defs.Units[i];
    u.Name = name;
    u.UnitName = "U" + std::to_string(i);
    u.Side = side;
    u.TEDClass = tedClass;
    u.Description = name + " unit";
    u.Weight = weight;
    u.Limit = limit;
    u.Build = true;
    u.Include = include;
    AddSide(defs.Races, side);
    return i;
}

// Gives SavedUnits a copy of Units with every Weight and Limit replaced, as a merge-mode read
// of a second profile leaves it.
inline void SetSavedValues(Definitions& defs, float weight, float limit) {
    defs.SavedUnits.Dim(defs.Units.UBound());
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        defs.SavedUnits[i] = defs.Units[i];
        defs.SavedUnits[i].Weight = weight;
        defs.SavedUnits[i].Limit = limit;
    }
}

// Figures from a script: every reading returns `free` (all three kinds).
class FixedGauge : public ResourceGauge {
  public:
    int free = 100;
    int readings = 0;
    int FreePercent(ResourceKind) override {
        ++readings;
        return free;
    }
};

} // namespace vantrel::test
