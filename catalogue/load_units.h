// Reading unit definition files (*.fbi) into the catalogue.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace vantrel {

// The value between StartDelim and EndDelim after the Occurrence-th Key of
// `text`. Empty when the key is missing; nullopt ("fails") when a delimiter
// is missing. A failed search for a later occurrence starts over from the
// beginning of the text, so occurrence 3 of a key found once finds it again.
std::optional<std::string> GetFieldInText(std::string_view text, std::string_view Key,
                                          std::uint8_t Occurrence, std::string_view StartDelim,
                                          std::string_view EndDelim);
// The same on a file read whole; an unreadable file fails.
std::optional<std::string> GetField(const std::string& FileName, std::string_view Key,
                                    std::uint8_t Occurrence, std::string_view StartDelim,
                                    std::string_view EndDelim);

// Fills one record from a unit file's text: the five fields in the loader's
// order, each searched with its exact key ("Name=" at its second
// occurrence); a field whose read fails keeps its previous value. A field
// still empty after that is read as the game reads it: the first statement
// of the [UNITINFO] block whose key is the field's name in any case
// ("side=ARM;" gives "ARM"; "Objectname=" is no "Name=").
void ReadUnitFields(std::string_view text, vtUnit& unit);

// Weight and Limit drawn for the "Random" start-up option.
void ApplyStartupRandom(vtUnit& unit, std::int32_t weightMax, RandomSource& random);

// A value rounded to two decimals as the pattern "###.##" shows it.
float RoundToHundredths(double value);

enum class LoadOutcome {
    Loaded,    // at least one unit
    Abort,     // no units with Extract on: the message was shown, end the program
    Restarted, // no units with Extract off: Extract stored as -1, new instance started
};

struct LoadContext {
    Progress& progress;
    Messages& messages;
    SettingsStore& settings;
    Shell& shell;
    RandomSource& random;
};

// Loads every *.fbi of the Units folder (AppDir + "Units") into Units, Races
// and SavedUnits, one unit per file name without regard to letter case, and
// indexes the folder's files in UnitFiles.
LoadOutcome LoadUnits(Definitions& defs, LoadContext& ctx);

// The same loading without the progress form and the no-units branch.
void LoadUnitsFromFolder(Definitions& defs, const std::string& unitsDir, RandomSource* random,
                         Progress* progress);

} // namespace vantrel
