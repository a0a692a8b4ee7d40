// The stored options of section "Options".
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace vantrel {

struct OptionSpec {
    std::string_view Key;
    std::int32_t Default;
};

// Indices 1..7 of OptionValues, in the order they are read and written.
extern const std::array<OptionSpec, 8> OptionTable; // [0] unused

// A whole number in -32768..32767 (blanks around it allowed), else nullopt.
std::optional<std::int16_t> ParseOption16(std::string_view text);

// Reads the seven numeric options, then LastDir (default AppDir). A value that
// is not a whole number in 16-bit range gives the option's default.
void ReadOptions(Definitions& defs, SettingsStore& store);

// Writes the seven numeric options in table order, as decimal text.
void WriteOptions(const Definitions& defs, SettingsStore& store);

} // namespace vantrel
