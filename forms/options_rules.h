// The rules of the Options dialog: what its text boxes accept, how the stored
// values are shown, and what OK takes from the boxes and writes to the store.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace vantrel {

// Each of the five number boxes holds at most this many characters.
inline constexpr int OptionTextMaxLength = 3;

// The stored key of the game folder that start-up searches first when it
// extracts (an addition of this program; empty: search as usual).
inline constexpr const char* GameDirKey = "GameDir";

// The per-character filter of the number boxes: a typed character is taken
// when it is a digit 0..9 or Backspace (8), so that a value can be corrected;
// everything else (Enter = 13, pasted text, letters, signs) is refused.
bool OptionKeyAccepted(int keyAscii);

// The number a box's text gives; an empty box (or text that is no number)
// keeps the option's previous value.
std::int32_t OptionFromText(std::string_view text, std::int32_t previous);

// What the dialog holds when OK is pressed.
struct OptionsInput {
    std::array<std::string, 5> Numbers; // txtEasy .. txtLimitMax
    bool Load = false;                  // chkLoad
    bool Random = false;                // chkRandom
    std::string GameDir;                // txtGameDir
};

// The dialog's state as loaded from the options and the store.
OptionsInput LoadOptionsInput(const Definitions& defs, SettingsStore& store);

// OK: the options from the input, then the seven keys written in order, then
// the game folder (trimmed) under GameDirKey.
void AcceptOptions(Definitions& defs, const OptionsInput& input, SettingsStore& store);

} // namespace vantrel
