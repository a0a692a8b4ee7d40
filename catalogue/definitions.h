// The unit catalogue and the program state shared by every part of Vantrel.
//
// One Definitions object lives for the whole run and is passed by reference;
// nothing here touches files or the screen.
#pragma once

#include "catalogue/units_folder.h"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

// One unit definition file. A plain record: values are stored as given.
struct vtUnit {
    std::string Name;        // display name
    std::string UnitName;    // identifier: key in profiles, stem of the picture file
    std::string TEDClass;    // class word matched against the category table
    std::string Side;        // "ARM", "CORE" or any other text as read
    std::string Description; // one-line description
    float Weight = 0.0f;     // build priority
    float Limit = 0.0f;      // number produced
    bool Build = false;
    bool Include = false; // false: excluded from the build set
};

struct vtRaces {
    std::string Name;
};

// A 1-based record array: element 0 exists but is never a catalogue entry.
// Out-of-range reads give a fresh empty record (the arrays "create their
// elements on first access"); writes beyond the end grow the array.
template <class T> class RecordArray {
  public:
    RecordArray() : items_(1) {}

    // Upper bound: the index of the last element (0 when empty).
    int UBound() const { return static_cast<int>(items_.size()) - 1; }
    // Re-dimension to 0..upper, discarding every record.
    void Dim(int upper) { items_.assign(static_cast<std::size_t>(upper < 0 ? 0 : upper) + 1, T{}); }
    // Re-dimension to 0..upper, keeping existing records.
    void Preserve(int upper) { items_.resize(static_cast<std::size_t>(upper < 0 ? 0 : upper) + 1); }

    T& operator[](int i) {
        if (i < 0) return scratch_ = T{};
        if (i > UBound()) Preserve(i);
        return items_[static_cast<std::size_t>(i)];
    }
    const T& operator[](int i) const {
        if (i < 0 || i > UBound()) return empty_;
        return items_[static_cast<std::size_t>(i)];
    }

  private:
    std::vector<T> items_;
    T scratch_{};
    static inline const T empty_{};
};

// Indices into OptionValues (1-based like the stored options).
enum OptionIndex : int {
    optEasyLimit = 1,
    optMediumLimit = 2,
    optHardLimit = 3,
    optWeightMax = 4,
    optLimitMax = 5,
    optExtract = 6,
    optRandom = 7,
};

struct Definitions {
    RecordArray<vtUnit> Units;
    RecordArray<vtRaces> Races;
    RecordArray<vtUnit> SavedUnits;

    std::string AppDir;  // program folder, always ending in one separator
    std::string GameDir; // the game's installation folder, may be empty
    std::array<std::int32_t, 8> OptionValues{0, 50, 75, 100, 10, 50, 0, 0}; // [0] unused
    std::string LastDir;
    std::string CurrentSide;
    int CurrentSideIndex = 0;
    bool DialogOK = false;
    bool Changed = false;
    std::string LoadedAIName;
    std::string ParentAIs;
    // The files of the Units folder by name without letter case: read with
    // the catalogue and told about every file extraction writes.
    UnitsFolder UnitFiles;

    std::int32_t Option(OptionIndex i) const { return OptionValues[static_cast<std::size_t>(i)]; }
    bool OptionOn(OptionIndex i) const { return Option(i) != 0; }
};

// Side names are compared without ASCII letter case everywhere: "Arm",
// "arm" and "ARM" are one side.
bool SameSide(std::string_view a, std::string_view b);
// Adds `side` to the side list unless a side of that name (any case) is
// there already: one entry per side, in the spelling seen first.
void AddSide(RecordArray<vtRaces>& races, std::string_view side);

// ---------------------------------------------------------------------------
// Categories
// ---------------------------------------------------------------------------
struct Category {
    std::string_view Caption;     // "Kbots"
    std::string_view MenuCaption; // "&Kbots"
    std::string_view Keywords;    // "KBOT"
};

// The Type menu's order: All, then Aircraft .. Workers (the menu puts a
// separator after All).
extern const std::array<Category, 11> Categories;
// "All" as the build-set dialog spells it.
inline constexpr std::string_view AllKeywordsBuildSet =
    "COMMANDER;VTOL;FORT;KBOT;PLANTENERGY;METAL;SHIP;WATER;SPECIAL;TANK;CNSTR";
// The build-set dialog's category order, as captions.
extern const std::array<std::string_view, 11> BuildSetCategoryOrder;
// Sides with fixed entries on the Side menu.
inline constexpr std::string_view StandardSides = "ARM;CORE";

// Keywords of a category by caption ("" when unknown).
std::string_view CategoryKeywords(std::string_view caption);

// Board and build-set membership: TEDClass occurs in the keyword list,
// case-sensitively. An empty TEDClass belongs everywhere.
bool InCategory(std::string_view tedClass, std::string_view keywords);
// Merge membership: the same test upper-cased, and the side must be the same.
bool InCategoryForMerge(const vtUnit& unit, std::string_view keywords, std::string_view side);

} // namespace vantrel
