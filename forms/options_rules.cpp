#include "forms/options_rules.h"

#include "base/text.h"
#include "startup/options.h"

namespace vantrel {

bool OptionKeyAccepted(int keyAscii) {
    return (keyAscii >= '0' && keyAscii <= '9') || keyAscii == 8;
}

bool SwitchChecked(std::int32_t value) {
    return value != 0;
}

std::int32_t OptionFromText(std::string_view text, std::int32_t previous) {
    auto value = ParseOption16(text);
    return value ? *value : previous;
}

OptionsInput LoadOptionsInput(const Definitions& defs, SettingsStore& store) {
    OptionsInput input;
    for (std::size_t i = 0; i < input.Numbers.size(); ++i)
        input.Numbers[i] = std::to_string(defs.OptionValues[i + optEasyLimit]);
    input.Load = SwitchChecked(defs.Option(optExtract));
    input.Random = SwitchChecked(defs.Option(optRandom));
    input.GameDir = store.Get(GameDirKey, "");
    return input;
}

void AcceptOptions(Definitions& defs, const OptionsInput& input, SettingsStore& store) {
    defs.DialogOK = true;
    for (std::size_t i = 0; i < input.Numbers.size(); ++i) {
        std::int32_t& value = defs.OptionValues[i + optEasyLimit];
        value = OptionFromText(input.Numbers[i], value);
    }
    defs.OptionValues[optExtract] = input.Load ? 1 : 0;
    defs.OptionValues[optRandom] = input.Random ? 1 : 0;
    WriteOptions(defs, store);
    store.Set(GameDirKey, TrimBlanks(input.GameDir));
}

} // namespace vantrel
