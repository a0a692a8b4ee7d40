// The rules of the Build Set dialog: the categories it offers, the unit rows
// of a category and the write-through of a row's check box into Include.
#pragma once

#include "catalogue/definitions.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

// The keyword list behind a caption of the dialog's category list: "All" is
// the build-set spelling, the others come from the category table, and an
// unknown caption gives an empty list.
std::string_view BuildSetKeywords(std::string_view caption);

struct BuildRow {
    std::string Text;      // side and name in proper case, UnitName: "Arm Commander (ARMCOM)"
    bool Checked = false;  // the unit's Include
    std::int32_t Unit = 0; // index into Units
};

// The rows of a category: every unit of every side whose TEDClass occurs in
// the keyword list (case-sensitive), by side, then in the board's order. An empty keyword list
// lists no unit.
std::vector<BuildRow> BuildSetRows(const Definitions& defs, std::string_view caption);

// Row -> unit map of the dialog: element 0 holds no unit, element k + 1 the
// unit shown in row k.
std::vector<std::int32_t> RowUnitsOf(const std::vector<BuildRow>& rows);

// A row's check box changed: the row's unit gets Include = checked at once.
// A row outside the list changes nothing; returns whether a unit was set.
bool SetRowInclude(Definitions& defs, const std::vector<std::int32_t>& rowUnits, int row,
                   bool checked);

} // namespace vantrel
