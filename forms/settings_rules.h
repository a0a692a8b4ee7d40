// The rules of the Settings dialog (the AI's name and author).
#pragma once

#include "catalogue/definitions.h"

#include <string>
#include <string_view>

namespace vantrel {

// The Settings dialog's OK is enabled for a name that is not blank.
bool IsAcceptableAIName(const std::string& name);
// OK of the Settings dialog after File, New: every unit starts from nothing.
void ResetUnitsForNewAI(Definitions& defs);

} // namespace vantrel
