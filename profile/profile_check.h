// Checking a profile against the catalogue: entries that name no unit, names
// that the reader takes for another unit's entry, units without a weight and
// values that are not numbers.
#pragma once

#include "catalogue/definitions.h"
#include "profile/profile.h"

#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

struct CheckFinding {
    enum Kind { Unknown, Shadowed, Missing, NotANumber };
    Kind kind;
    std::string name;     // Unknown, Shadowed: the entry's name; Missing: the unit's UnitName
    std::string unitName; // Shadowed: the unit whose entry the reader takes it for
    int line = 0;         // NotANumber: 1-based line of the entry
    std::string text;     // NotANumber: the entry's line, trimmed of blanks
};

// The findings for a profile (`tessaly`: the INI-style format), in the order
// unknown, shadowed, missing, not-a-number; within each kind in the order of
// the file (missing: in catalogue order). The profile's build set, when it
// has one, says which units are included, else their Include flags do.
// `sep` is the decimal separator the readers use.
std::vector<CheckFinding> CheckProfile(const Definitions& defs, const ProfileText& profile,
                                       bool tessaly, std::string_view sep);

// A finding as one line: "unknown\tNAME", "shadowed\tNAME\tUNITNAME",
// "missing\tUNITNAME" or "not-a-number\tLINE\tTEXT".
std::string CheckLine(const CheckFinding& finding);

} // namespace vantrel
