// The rules of the Settings dialog (the AI's name and author).
#pragma once

#include "catalogue/definitions.h"

#include <string>
#include <string_view>

namespace vantrel {

// Text from a file as the Settings fields and the banner may show it: control
// characters (also those of the Latin-1 upper half) are dropped.
std::string WithoutControlCharacters(std::string_view text);
// The Settings dialog's OK is enabled for a name that is not blank.
bool IsAcceptableAIName(const std::string& name);
// OK of the Settings dialog after File, New: every unit starts from nothing.
void ResetUnitsForNewAI(Definitions& defs);

} // namespace vantrel
