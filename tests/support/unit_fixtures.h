// Catalogues made in code for the card, board and Randomize tests.
#pragma once

#include "catalogue/definitions.h"
#include "mainwindow/board_rules.h"

#include <string>

namespace vantrel::test {

// Appends a unit to defs.Units and returns its index.
inline int AddUnit(Definitions& defs, const std::string& name, const std::string& side,
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
    return i;
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
