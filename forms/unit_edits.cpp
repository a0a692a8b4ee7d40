#include "forms/unit_edits.h"

#include "base/text.h"
#include "forms/unit_card_rules.h"

#include <algorithm>

namespace vantrel {

namespace {

bool ContainsNoCase(std::string_view text, std::string_view part) {
    auto same = [](char a, char b) { return UpperChar(a) == UpperChar(b); };
    return std::search(text.begin(), text.end(), part.begin(), part.end(), same) != text.end();
}

const char* FieldCaption(UnitField field) {
    return field == UnitField::Weight ? "Build Priority" : "Number Produced";
}

} // namespace

bool MatchesUnitFilter(const vtUnit& unit, std::string_view filter) {
    if (filter.empty() || filter == "*") return true;
    return ContainsNoCase(unit.Name, filter) || ContainsNoCase(unit.UnitName, filter) ||
           ContainsNoCase(unit.Side, filter) || ContainsNoCase(unit.TEDClass, filter);
}

std::vector<int> UnitsMatching(const Definitions& defs, std::string_view filter) {
    std::vector<int> units;
    for (int i = 1; i <= defs.Units.UBound(); ++i)
        if (MatchesUnitFilter(defs.Units[i], filter)) units.push_back(i);
    return units;
}

bool OnBoard(const vtUnit& unit, std::string_view side, std::string_view keywords) {
    return SameSide(unit.Side, side) && InCategory(unit.TEDClass, keywords);
}

std::string_view CategoryOf(const vtUnit& unit) {
    if (unit.TEDClass.empty()) return {}; // it would belong to every category
    for (std::size_t c = 1; c < Categories.size(); ++c)
        if (InCategory(unit.TEDClass, Categories[c].Keywords)) return Categories[c].Caption;
    return {};
}

namespace {
// Rounded in double precision, as the card's entry fields do; out-of-range
// values (and NaN) are pulled in before rounding.
int Position(double value, const SliderSettings& slider) {
    if (!(value > slider.Min)) return slider.Min;
    if (value > slider.Max) return slider.Max;
    return slider.Clamp(RoundHalfEven(value));
}
} // namespace

float BoundedWeight(double value, int weightMax) {
    return static_cast<float>(Position(value * 100.0, PrioritySettings(weightMax)) / 100.0);
}

float BoundedLimit(double value, int limitMax) {
    return static_cast<float>(Position(value, NumbersSettings(limitMax)));
}

double FieldValue(const vtUnit& unit, UnitField field) {
    switch (field) {
    case UnitField::Weight:
        return unit.Weight;
    case UnitField::Limit:
        return unit.Limit;
    case UnitField::Include:
        return unit.Include ? 1 : 0;
    }
    return 0;
}

UnitValues ValuesOf(const vtUnit& unit) {
    return UnitValues{unit.Weight, unit.Limit, unit.Include};
}

std::vector<UnitValues> SnapshotValues(const Definitions& defs) {
    std::vector<UnitValues> values(static_cast<std::size_t>(defs.Units.UBound()) + 1);
    for (int i = 1; i <= defs.Units.UBound(); ++i)
        values[static_cast<std::size_t>(i)] = ValuesOf(defs.Units[i]);
    return values;
}

UnitChanges ChangesSince(const Definitions& defs, const std::vector<UnitValues>& before) {
    UnitChanges changes;
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        // A unit added since the snapshot counts as changed from nothing.
        UnitValues old = static_cast<std::size_t>(i) < before.size()
                             ? before[static_cast<std::size_t>(i)]
                             : UnitValues{};
        UnitValues now = ValuesOf(defs.Units[i]);
        if (!(old == now)) changes.push_back({i, old, now});
    }
    return changes;
}

UnitChanges SetUnitValues(Definitions& defs, const std::vector<int>& units, UnitField field,
                          double value) {
    const float weight = BoundedWeight(value, defs.Options.WeightMax);
    const float limit = BoundedLimit(value, defs.Options.LimitMax);
    UnitChanges changes;
    changes.reserve(units.size());
    for (int i : units) {
        if (i < 1 || i > defs.Units.UBound()) continue;
        vtUnit& unit = defs.Units[i];
        UnitChange change{i, ValuesOf(unit), {}};
        switch (field) {
        case UnitField::Weight:
            unit.Weight = weight;
            break;
        case UnitField::Limit:
            unit.Limit = limit;
            break;
        case UnitField::Include:
            unit.Include = value != 0;
            break;
        }
        change.After = ValuesOf(unit);
        changes.push_back(change);
    }
    return changes;
}

void ApplyChanges(Definitions& defs, const UnitChanges& changes, bool undo) {
    for (const UnitChange& change : changes) {
        const UnitValues& v = undo ? change.Before : change.After;
        vtUnit& unit = defs.Units[change.Unit];
        unit.Weight = v.Weight;
        unit.Limit = v.Limit;
        unit.Include = v.Include;
    }
}

bool AnyDifference(const UnitChanges& changes) {
    return std::any_of(changes.begin(), changes.end(),
                       [](const UnitChange& c) { return !(c.Before == c.After); });
}

std::string EditName(const Definitions& defs, UnitField field, bool include,
                     const std::vector<int>& units) {
    std::string what = units.size() == 1 ? defs.Units[units.front()].Name
                                         : std::to_string(units.size()) + " units";
    if (field == UnitField::Include) return (include ? "Include " : "Exclude ") + what;
    return std::string("Set ") + FieldCaption(field) + " of " + what;
}

std::optional<BulkSet> ParseBulkSet(std::string_view text) {
    const std::size_t colon = text.rfind(':');
    if (colon == std::string_view::npos) return std::nullopt;
    std::string_view assignment = text.substr(colon + 1);
    const std::size_t equals = assignment.find('=');
    if (equals == std::string_view::npos) return std::nullopt;
    BulkSet set;
    set.Filter = std::string(text.substr(0, colon));
    const std::string name = LCase(assignment.substr(0, equals));
    if (name == "weight")
        set.Field = UnitField::Weight;
    else if (name == "limit")
        set.Field = UnitField::Limit;
    else
        return std::nullopt;
    auto value = EntryNumber(assignment.substr(equals + 1));
    if (!value) return std::nullopt;
    set.Value = *value;
    return set;
}

int ApplyBulkSet(Definitions& defs, const BulkSet& set) {
    const std::vector<int> units = UnitsMatching(defs, set.Filter);
    SetUnitValues(defs, units, set.Field, set.Value);
    return static_cast<int>(units.size());
}

} // namespace vantrel
