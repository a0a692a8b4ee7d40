#include "forms/merge_rules.h"

#include "base/text.h"

#include <utility>

namespace vantrel {

const std::array<std::string_view, 10> MergeCategoryWords{
    "Commanders", "Defenses",  "Aircraft", "Kbots",    "Navy",
    "Plants",     "Resources", "Specials", "Vehicles", "Workers"};

namespace {
void AddSideRows(std::vector<TraitRow>& rows, std::string_view side) {
    for (std::string_view word : MergeCategoryWords)
        rows.push_back({std::string(side) + " " + std::string(word), false});
}
} // namespace

std::string MergeLabelText(std::string_view loadedAIName, std::string_view currentAIName) {
    return "Merging " + std::string(loadedAIName) + " with " + std::string(currentAIName) +
           ".  Please select the traits you would like to use.";
}

std::vector<TraitRow> MergeTraitRows(const RecordArray<vtRaces>& races) {
    std::vector<TraitRow> rows;
    AddSideRows(rows, "Arm");
    AddSideRows(rows, "Core");
    for (const vtRaces& race : races) {
        const std::string& name = race.Name;
        if (ContainsText(MergeFixedSides, UCase(name))) continue;
        AddSideRows(rows, ProperCase(name));
    }
    return rows;
}

Trait SplitTraitRow(std::string_view row) {
    std::size_t blank = row.find(' ');
    if (blank == std::string_view::npos) return {TrimBlanks(row), {}};
    return {TrimBlanks(row.substr(0, blank + 1)), TrimBlanks(row.substr(blank))};
}

std::string MergeKeywords(std::string_view categoryWord) {
    // "All" is no trait: only the ten categories of a side's rows are looked up.
    std::string_view keywords =
        categoryWord == "All" ? std::string_view{} : CategoryKeywords(categoryWord);
    return std::string(keywords.empty() ? categoryWord : keywords);
}

int MergeTrait(Definitions& defs, std::string_view row) {
    const Trait trait = SplitTraitRow(row);
    const std::string keywords = MergeKeywords(trait.Category);
    int taken = 0;
    for (int i = 1; i <= defs.Units.UBound(); ++i) {
        vtUnit& unit = defs.Units[i];
        if (!InCategoryForMerge(unit, keywords, trait.Side)) continue;
        const vtUnit& saved = std::as_const(defs.SavedUnits)[i];
        unit.Weight = saved.Weight;
        unit.Limit = saved.Limit;
        ++taken;
    }
    return taken;
}

void AcceptMerge(Definitions& defs) {
    if (!ContainsText(UCase(defs.Profile.ParentAIs), UCase(defs.Profile.LoadedAIName)))
        defs.Profile.ParentAIs += defs.Profile.LoadedAIName + ", ";
}

void MergeTraits(Definitions& defs, const std::vector<TraitRow>& rows, Progress& progress) {
    progress.Show();
    progress.SetStatus("Merging Hybrid AI...");
    progress.SetMaximum(static_cast<int>(rows.size()));
    progress.SetValue(0);
    for (const TraitRow& row : rows) {
        if (row.Checked) MergeTrait(defs, row.Text);
        progress.AddValue(1);
        progress.Repaint();
    }
    progress.Close();
}

} // namespace vantrel
