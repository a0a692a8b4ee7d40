// Catalogues and ports for the dialog tests.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"

#include <string>
#include <vector>

namespace vantrel::testing {

// Appends a unit (Include and Build true) and, when its side is new, a race.
// Returns the unit's index.
int AddUnit(Definitions& defs, const std::string& side, const std::string& name,
            const std::string& tedClass, float weight = 0.0f, float limit = 0.0f);

// Gives SavedUnits a copy of Units with every Weight and Limit replaced, as a
// merge-mode read of a second profile leaves it.
void SetSavedValues(Definitions& defs, float weight, float limit);

// A progress form that records what it was asked to do.
class RecordingProgress : public Progress {
  public:
    void Show() override { calls.push_back("Show"); }
    void Repaint() override { ++repaints; }
    void Close() override { calls.push_back("Close"); }
    std::vector<std::string> calls;
    int repaints = 0;
};

} // namespace vantrel::testing
