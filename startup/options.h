// The stored options of section "Options".
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>

namespace vantrel {

// One stored option: its key and the field it fills. A number is stored as
// decimal text, a switch as 1 or 0 (any other whole number reads as on).
struct OptionKey {
    std::string_view Key;
    std::int32_t Options::*Number = nullptr;
    bool Options::*Switch = nullptr;
};

// Every stored option, in the order they are read and written: the five
// numbers (the order of the Options dialog's boxes), then the two switches.
inline constexpr std::array<OptionKey, 7> OptionTable{{
    {"EasyLimit", &Options::EasyLimit},
    {"MediumLimit", &Options::MediumLimit},
    {"HardLimit", &Options::HardLimit},
    {"WeightMax", &Options::WeightMax},
    {"LimitMax", &Options::LimitMax},
    {"Extract", nullptr, &Options::Extract},
    {"Random", nullptr, &Options::Random},
}};

// A whole number in -32768..32767 (blanks around it allowed), else nullopt.
std::optional<std::int16_t> ParseOption16(std::string_view text);

// Reads the seven options, then LastDir (default AppDir). A value that is not
// a whole number in 16-bit range gives the option's default (Options{}).
void ReadOptions(Definitions& defs, SettingsStore& store);

// Writes the seven options in table order, as decimal text.
void WriteOptions(const Definitions& defs, SettingsStore& store);

} // namespace vantrel
