#include "forms/settings_rules.h"

#include "base/text.h"

namespace vantrel {

std::string WithoutControlCharacters(std::string_view text) {
    std::string out;
    out.reserve(text.size());
    for (char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 32 || (byte >= 127 && byte < 160)) continue;
        out += c;
    }
    return out;
}

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
