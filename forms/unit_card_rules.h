// The rules of the unit card without the widgets: slider settings and steps,
// the entry fields' commits, the manual edit, colours, and the order in which
// units are listed.
#pragma once

#include "catalogue/definitions.h"

#include <optional>
#include <string>
#include <string_view>

namespace vantrel {

// Halves go to the even neighbour (2.5 gives 2, 3.5 gives 4).
int RoundHalfEven(double value);

struct SliderSettings {
    int Min = 0;
    int Max = 0;
    int LargeChange = 0;
    int SmallChange = 0;
    int TickFrequency = 0;

    int Clamp(int value) const { return value < Min ? Min : (value > Max ? Max : value); }
};

// The sliders as every activation sets them from the options. A priority
// slider counts hundredths up to WeightMax: its small step (arrow keys, a
// wheel notch) is a hundredth of the range, its large step (Page Up, Page
// Down) and its ticks a tenth. A numbers slider steps by one and by a tenth
// of LimitMax. Every step is at least one position.
SliderSettings PrioritySettings(int weightMax);
SliderSettings NumbersSettings(int limitMax);
SliderSettings PrioritySettings(const Definitions& defs);
SliderSettings NumbersSettings(const Definitions& defs);

// Slider positions of a unit's values: Weight in hundredths, Limit whole,
// rounded and kept within the slider's range.
int PriorityPosition(float weight, const SliderSettings& slider);
int NumbersPosition(float limit, const SliderSettings& slider);

// The player's edits, the only writers of a unit's values: Weight from a
// priority position (hundredths), Limit from a whole number. A value equal to
// the unit's own is not written again, so Changed is set only by a real change.
// Returns whether the unit changed.
bool ApplyPriorityPosition(Definitions& defs, vtUnit& unit, int position);
bool ApplyNumbersPosition(Definitions& defs, vtUnit& unit, int position);

// Where a slider at `value` ends after `notches` wheel notches on the active
// card's focused slider: one small step a notch (away from the player is up).
int SliderWheelPosition(int value, int notches, const SliderSettings& slider);

// The keys that move from card to card (Ctrl+Down, Ctrl+Up, Ctrl+Home,
// Ctrl+End); the board decides where they lead.
enum class CardStep { Next, Previous, First, Last };

// Text to number with "." as the decimal point; nullopt when the text holds
// no number (empty, ".", anything else that is not a plain decimal).
std::optional<double> EntryNumber(std::string_view text);

// Committing an entry field. `text` is the field's text and is changed as
// the commit changes it; the result is the slider position to set, or
// nullopt when the text holds no number (the caller shows the unit's value
// again).
std::optional<int> CommitWeightText(std::string& text, const SliderSettings& slider);
std::optional<int> CommitLimitText(std::string& text, const SliderSettings& slider, bool truncate);

// The manual edit's answer: a whole number limited to 0..255 (nullopt when
// the answer is not a number).
std::optional<int> ManualPriority(std::string_view answer);

inline constexpr std::string_view UnnamedCaption = "Unit Name goes here";
inline constexpr std::string_view ExcludedCaption = "This unit has been excluded";
inline constexpr std::string_view EntryTooltip =
    "You may manually edit the unit's build priority here";
inline constexpr std::string_view ManualEditTitle = "Manual Edit";
inline constexpr std::string_view ManualEditPrompt =
    "Please enter a Build Priority for this unit.\r\n\r\n0 to 255";

// ---------------------------------------------------------------------------
// Colours
// ---------------------------------------------------------------------------
struct Rgb {
    int r = 0, g = 0, b = 0;
    bool operator==(const Rgb&) const = default;
};
inline constexpr Rgb Black{0, 0, 0};
inline constexpr Rgb White{255, 255, 255};
// The contrast of two colours, 1 (none) to 21 (black on white), from their
// relative luminance as the accessibility guidelines define it.
double ContrastRatio(Rgb a, Rgb b);
inline constexpr double ReadableContrast = 4.5;
// `preferred` when it reads on `back` at 4.5:1 or better, otherwise black or
// white, whichever reads better.
Rgb ReadableText(Rgb back, Rgb preferred);

// ---------------------------------------------------------------------------
// Order of units wherever they are listed (board, Build Set, table)
// ---------------------------------------------------------------------------
// Compares without letter case, runs of digits by their number: "Unit 2"
// before "Unit 10", "Peewee" before "Peewee Vulcan". Negative, 0, positive.
int NaturalCompare(std::string_view a, std::string_view b);
// By name, then by UnitName, each in natural order without case.
bool UnitOrderLess(const vtUnit& a, const vtUnit& b);

} // namespace vantrel
