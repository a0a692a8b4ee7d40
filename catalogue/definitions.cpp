#include "catalogue/definitions.h"

#include "base/text.h"

#include <cassert>
#include <cstdio>

namespace vantrel {

const std::array<Category, 11> Categories{{
    {"All", "&All", "CNSTR;TANK;SPECIAL;SHIP;WATER;ENERGY;METAL;PLANT;KBOT;FORT;VTOL;COMMANDER"},
    {"Aircraft", "&Aircraft", "VTOL"},
    {"Commanders", "&Commanders", "COMMANDER"},
    {"Defenses", "&Defenses", "FORT"},
    {"Kbots", "&Kbots", "KBOT"},
    {"Navy", "&Navy", "SHIP;WATER"},
    {"Plants", "&Plants", "PLANT"},
    {"Resources", "&Resources", "ENERGY;METAL;"},
    {"Specials", "&Specials", "SPECIAL"},
    {"Vehicles", "&Vehicles", "TANK"},
    {"Workers", "&Workers", "CNSTR"},
}};

const std::array<std::string_view, 11> BuildSetCategoryOrder{
    "All",       "Commanders", "Aircraft", "Defenses", "Kbots",  "Plants",
    "Resources", "Navy",       "Specials", "Vehicles", "Workers"};

std::string_view CategoryKeywords(std::string_view caption) {
    for (const auto& c : Categories)
        if (c.Caption == caption) return c.Keywords;
    return {};
}

bool InCategory(std::string_view tedClass, std::string_view keywords) {
    return ContainsText(keywords, tedClass);
}

bool InCategoryForMerge(const vtUnit& unit, std::string_view keywords, std::string_view side) {
    return ContainsText(UCase(keywords), UCase(unit.TEDClass)) && SameSide(unit.Side, side);
}

bool SameSide(std::string_view a, std::string_view b) {
    return EqualsNoCase(a, b);
}

void AddSide(RecordArray<vtRaces>& races, std::string_view side) {
    for (const vtRaces& race : races)
        if (SameSide(race.Name, side)) return;
    races.Preserve(races.UBound() + 1);
    races[races.UBound()].Name = std::string(side);
}

void RecordIndexOutOfRange(int index, int upper) {
    std::fprintf(stderr, "vantrel: record index %d outside 0..%d\n", index, upper);
    assert(!"record index out of range");
}

} // namespace vantrel
