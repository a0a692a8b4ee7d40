// The rules of the Merge dialog: which trait rows it offers, and how the
// checked traits take build priority and number produced from the second
// profile (held in SavedUnits).
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"

#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

// Sides that get no rows of their own: every side whose upper-case name
// occurs anywhere in this text (ARM, CORE, and also COR, M, "" ...).
inline constexpr std::string_view MergeFixedSides = "ARM;CORE;COR;M";

// The category words of a side's ten rows, in list order.
extern const std::array<std::string_view, 10> MergeCategoryWords;

// One row of the trait list: "Core Kbots", checked or not.
struct TraitRow {
    std::string Text;
    bool Checked = false;
};

// The label above the list: "Merging <second> with <current>.  Please select ...".
std::string MergeLabelText(std::string_view loadedAIName, std::string_view currentAIName);

// The rows of the list, all unchecked: the twenty Arm and Core rows, then ten
// rows for every further side of `races` in index order.
std::vector<TraitRow> MergeTraitRows(const RecordArray<vtRaces>& races);

// A row's side and category word: the text before its first blank and the
// text after it, both trimmed. A row without a blank is all side word.
struct Trait {
    std::string Side;
    std::string Category;
};
Trait SplitTraitRow(std::string_view row);

// The keyword list a category word selects; an unknown word is its own list.
std::string MergeKeywords(std::string_view categoryWord);

// Takes Weight and Limit from SavedUnits for every unit of the row's trait.
// Returns the number of units taken over.
int MergeTrait(Definitions& defs, std::string_view row);

// First steps of OK: the second profile's name joins ParentAIs (unless it
// already occurs there, compared without regard to case).
void AcceptMerge(Definitions& defs);

// The merge proper: shows the progress form, merges every checked row (one
// progress step per row, checked or not) and closes the form again.
void MergeTraits(Definitions& defs, const std::vector<TraitRow>& rows, Progress& progress);

} // namespace vantrel
