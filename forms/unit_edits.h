// Edits of unit values shared by the unit table, the cards and the command
// line: the table's filter, the bounds of a typed value, bulk sets over a
// list of units, and the record of old and new values that undo replays.
#pragma once

#include "catalogue/definitions.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

enum class UnitField { Weight, Limit, Include };

// The values of a unit that the player edits.
struct UnitValues {
    float Weight = 0.0f;
    float Limit = 0.0f;
    bool Include = false;
    bool operator==(const UnitValues&) const = default;
};

// One unit's values before and after an edit.
struct UnitChange {
    int Unit = 0;
    UnitValues Before;
    UnitValues After;
};
using UnitChanges = std::vector<UnitChange>;

// The table's filter: true when Name, UnitName, Side or TEDClass contains
// `filter` without regard to (ASCII) letter case. An empty filter and "*"
// keep every unit.
bool MatchesUnitFilter(const vtUnit& unit, std::string_view filter);
// Indices of the catalogue units that the filter keeps, in index order.
std::vector<int> UnitsMatching(const Definitions& defs, std::string_view filter);

// A unit is on the board of `side` (as the Side menu spells it, compared
// exactly) and the category with these keywords.
bool OnBoard(const vtUnit& unit, std::string_view side, std::string_view keywords);
// The first category (in Type-menu order, "All" left out) the unit belongs
// to; "" when none does.
std::string_view CategoryOf(const vtUnit& unit);

// A typed value brought within the card's bounds: weights in hundredths from
// 0 to WeightMax, limits whole from 0 to LimitMax (halves to even).
float BoundedWeight(double value, int weightMax);
float BoundedLimit(double value, int limitMax);
// The value of one field as a number (Include: 1 or 0).
double FieldValue(const vtUnit& unit, UnitField field);

UnitValues ValuesOf(const vtUnit& unit);
// Every unit's values, index i at element i (element 0 unused).
std::vector<UnitValues> SnapshotValues(const Definitions& defs);
// The units whose values differ from `before` (a snapshot).
UnitChanges ChangesSince(const Definitions& defs, const std::vector<UnitValues>& before);

// Sets `field` of every listed unit to `value`, bounded as above (Include:
// any value but 0 includes). Returns every listed unit with its old and new
// values, changed or not.
UnitChanges SetUnitValues(Definitions& defs, const std::vector<int>& units, UnitField field,
                          double value);
// Writes the old (undo) or new values of each change back into the units.
void ApplyChanges(Definitions& defs, const UnitChanges& changes, bool undo);
bool AnyDifference(const UnitChanges& changes);

// The name of an edit in the Edit menu: "Set Build Priority of 12 units",
// "Set Number Produced of Arm Commander", "Exclude 3 units".
std::string EditName(const Definitions& defs, UnitField field, bool include,
                     const std::vector<int>& units);

// The command line's bulk set "FILTER:weight=V" or "FILTER:limit=V".
struct BulkSet {
    std::string Filter;
    UnitField Field = UnitField::Weight;
    double Value = 0;
};
std::optional<BulkSet> ParseBulkSet(std::string_view text);
// Applies a bulk set to every unit the filter keeps; returns how many units it kept.
int ApplyBulkSet(Definitions& defs, const BulkSet& set);

} // namespace vantrel
