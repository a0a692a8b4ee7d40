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

// An index outside 0..upper given for writing: a programming error. Asserts
// in debug builds; release builds carry on (see RecordArray).
void RecordIndexOutOfRange(int index, int upper);

// A 1-based record array: element 0 exists but is never a catalogue entry.
// It grows only through Dim and Preserve. Out-of-range reads give an empty
// record; an out-of-range write is a programming error that lands in a
// scratch record, which is emptied again at every such access.
template <class T> class RecordArray {
  public:
    RecordArray() : items_(1) {}

    // Upper bound: the index of the last element (0 when empty).
    int UBound() const { return static_cast<int>(items_.size()) - 1; }
    // The records 1..UBound(): their number and a range for range-for.
    int size() const { return UBound(); }
    auto begin() { return items_.begin() + 1; }
    auto end() { return items_.end(); }
    auto begin() const { return items_.begin() + 1; }
    auto end() const { return items_.end(); }
    // Re-dimension to 0..upper, discarding every record.
    void Dim(int upper) { items_.assign(static_cast<std::size_t>(upper < 0 ? 0 : upper) + 1, T{}); }
    // Re-dimension to 0..upper, keeping existing records.
    void Preserve(int upper) { items_.resize(static_cast<std::size_t>(upper < 0 ? 0 : upper) + 1); }

    T& operator[](int i) {
        if (i < 0 || i > UBound()) {
            RecordIndexOutOfRange(i, UBound());
            return scratch_ = T{};
        }
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

// The stored options with their defaults (settings group "Options"; the
// keys are the field names, see OptionTable).
struct Options {
    std::int32_t EasyLimit = 50;   // per cent of each limit in the easy plan
    std::int32_t MediumLimit = 75; // ... in the medium plan
    std::int32_t HardLimit = 100;  // ... in the hard plan
    std::int32_t WeightMax = 10;   // top of the build priority scale
    std::int32_t LimitMax = 50;    // top of the number-produced scale
    bool Extract = false;          // extract the game's units at every start
    bool Random = false;           // random build priorities at start-up

    bool operator==(const Options&) const = default;
};

// The profile being edited, beside the values in Units.
struct EditedProfile {
    bool Changed = false;     // edited since it was opened, created or saved
    std::string LoadedAIName; // the AI name of the profile read last
    std::string ParentAIs;    // "Name AI, " for every profile merged into it
};

struct Definitions {
    RecordArray<vtUnit> Units;
    RecordArray<vtRaces> Races;
    RecordArray<vtUnit> SavedUnits;

    std::string AppDir;  // program folder, always ending in one separator
    std::string GameDir; // the game's installation folder, may be empty
    vantrel::Options Options;
    std::string LastDir;
    std::string CurrentSide;
    int CurrentSideIndex = 0;
    EditedProfile Profile;
    // The files of the Units folder by name without letter case: read with
    // the catalogue and told about every file extraction writes.
    UnitsFolder UnitFiles;
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
