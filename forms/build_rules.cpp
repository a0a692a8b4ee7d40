#include "forms/build_rules.h"

#include "base/text.h"
#include "forms/unit_card_rules.h"

#include <algorithm>

namespace vantrel {

std::string_view BuildSetKeywords(std::string_view caption) {
    if (caption == "All") return AllKeywordsBuildSet;
    return CategoryKeywords(caption);
}

std::vector<BuildRow> BuildSetRows(const Definitions& defs, std::string_view caption) {
    std::vector<BuildRow> rows;
    const std::string_view keywords = BuildSetKeywords(caption);
    if (keywords.empty()) return rows;
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        const vtUnit& unit = defs.Units[i];
        if (!InCategory(unit.TEDClass, keywords)) continue;
        rows.push_back(
            {ProperCase(unit.Side + " " + unit.Name) + " (" + unit.UnitName + ")", unit.Include, i});
    }
    // By side, then as the board orders its cards.
    std::stable_sort(rows.begin(), rows.end(), [&defs](const BuildRow& a, const BuildRow& b) {
        const vtUnit& x = defs.Units[a.Unit];
        const vtUnit& y = defs.Units[b.Unit];
        if (int side = NaturalCompare(x.Side, y.Side); side != 0) return side < 0;
        return UnitOrderLess(x, y);
    });
    return rows;
}

std::vector<std::int32_t> RowUnitsOf(const std::vector<BuildRow>& rows) {
    std::vector<std::int32_t> rowUnits{0};
    for (const BuildRow& row : rows)
        rowUnits.push_back(row.Unit);
    return rowUnits;
}

bool SetRowInclude(Definitions& defs, const std::vector<std::int32_t>& rowUnits, int row,
                   bool checked) {
    if (row < 0 || static_cast<std::size_t>(row) + 1 >= rowUnits.size()) return false;
    const std::int32_t unit = rowUnits[static_cast<std::size_t>(row) + 1];
    if (unit < 1 || unit > defs.Units.UBound()) return false;
    defs.Units[unit].Include = checked;
    return true;
}

} // namespace vantrel
