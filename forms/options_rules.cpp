#include "forms/options_rules.h"

#include "base/text.h"
#include "startup/options.h"

namespace vantrel {

bool OptionKeyAccepted(int keyAscii) {
    return (keyAscii >= '0' && keyAscii <= '9') || keyAscii == 8;
}

std::int32_t OptionFromText(std::string_view text, std::int32_t previous) {
    auto value = ParseOption16(text);
    return value ? *value : previous;
}

OptionsInput LoadOptionsInput(const Definitions& defs, SettingsStore& store) {
    OptionsInput input;
    for (std::size_t i = 0; i < input.Numbers.size(); ++i)
        input.Numbers[i] = std::to_string(defs.Options.*OptionTable[i].Number);
    input.Load = defs.Options.Extract;
    input.Random = defs.Options.Random;
    input.GameDir = store.Get(GameDirKey, "");
    return input;
}

void AcceptOptions(Definitions& defs, const OptionsInput& input, SettingsStore& store) {
    for (std::size_t i = 0; i < input.Numbers.size(); ++i) {
        std::int32_t& value = defs.Options.*OptionTable[i].Number;
        value = OptionFromText(input.Numbers[i], value);
    }
    defs.Options.Extract = input.Load;
    defs.Options.Random = input.Random;
    WriteOptions(defs, store);
    store.Set(GameDirKey, TrimBlanks(input.GameDir));
}

} // namespace vantrel
