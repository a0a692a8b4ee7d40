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
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        defs.Units[i].Weight = 0.0f;
        defs.Units[i].Limit = 0.0f;
        defs.Units[i].Include = true;
    }
}

} // namespace vantrel
