// Checking a profile against the catalogue: entries that name no unit, names
// that the reader takes for another unit's entry, units without a weight and
// values that are not numbers. The check finds entries exactly as the reader
// does, so the two never disagree.
#pragma once

#include "catalogue/definitions.h"
#include "profile/profile.h"

#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

struct CheckFinding {
    enum Kind { Unknown, Shadowed, Missing, NotANumber };
    Kind kind = Unknown;
    std::string name;     // Unknown, Shadowed: the entry's name; Missing: the unit's UnitName
    std::string unitName; // Shadowed: the unit whose entry the reader takes it for
    int line = 0;         // 1-based line of the (first) entry; 0 for Missing
    std::string text;     // NotANumber: the entry, trimmed of blanks
    std::string value;    // NotANumber: its value text
    float readAs = 0.0f;  // NotANumber: the number the reader makes of the value
    bool weight = false;  // Shadowed: a WEIGHT entry is read as the unit's
    bool limit = false;   // Shadowed: a LIMIT entry is read as the unit's
};

// The findings for a profile (`tessaly`: the INI-style format), in the order
// unknown, shadowed, missing, not-a-number; within each kind in the order of
// the file (missing: in catalogue order). The profile's build set, when it
// has one, says which units are included, else their Include flags do.
// `sep` is the decimal separator the readers use. Lines end at CR LF, LF or
// a lone CR, as for the readers.
std::vector<CheckFinding> CheckProfile(const Definitions& defs, const ProfileText& profile,
                                       bool tessaly, std::string_view sep);

// A finding as one TAB-separated line, every field escaped: "unknown\tNAME",
// "shadowed\tNAME\tUNITNAME", "missing\tUNITNAME" or "not-a-number\tLINE\tTEXT".
std::string CheckLine(const CheckFinding& finding);

// A finding in words, with what the game does about it (the line apart):
// "ARMCOMX names no unit: ignored", "WEIGHT ARMCOMX is read as ARMCOM's",
// "ARMFOO has no WEIGHT entry: weight 0", "'abc' is not a number: read as 0".
std::string CheckSentence(const CheckFinding& finding);

} // namespace vantrel
