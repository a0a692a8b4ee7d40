// The rules of the unit card without the widgets: slider settings, key steps,
// the entry-field filter and commits, the slider notifications and the
// card's design geometry (in twips).
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

// The sliders as designed (until the first activation).
inline constexpr SliderSettings PriorityDesign{0, 1000, 100, 1, 100};
inline constexpr SliderSettings NumbersDesign{0, 50, 5, 1, 5};

// The sliders as every activation sets them from the options.
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

// Key codes the sliders react to.
enum SliderKey : int {
    KeyPageUp = 33,
    KeyPageDown = 34,
    KeyLeft = 37,
    KeyUp = 38,
    KeyRight = 39,
    KeyDown = 40,
};

// The card's own step before the slider's (0 for other keys).
int SliderKeyDelta(int keyCode, bool prioritySlider);
// The slider's own keyboard step on the trackbar: Left, Up and Page Up move
// towards Min, Right, Down and Page Down towards Max (0 for other keys).
int TrackbarStep(int keyCode, const SliderSettings& slider);
// Where a slider at `value` ends after a key: the card's step, then the
// trackbar's, each kept within the range.
int SliderKeyPosition(int value, int keyCode, bool prioritySlider, const SliderSettings& slider);
// The wheel on the active card's focused slider: each notch away from the
// player (positive) is an Up key, each notch towards the player a Down key.
int SliderWheelPosition(int value, int notches, bool prioritySlider, const SliderSettings& slider);

// The keys that move from card to card (Ctrl+Down, Ctrl+Up, Ctrl+Home,
// Ctrl+End); the board decides where they lead.
enum class CardStep { Next, Previous, First, Last };

// The entry fields' per-character filter.
enum class KeyVerdict { Accept, Cancel, Commit };
KeyVerdict FilterEntryKey(int charCode, std::string_view currentText);

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
// Geometry in twips.
// ---------------------------------------------------------------------------
inline constexpr int TwipsPerPixel = 15;
int TwipsToPixels(int twips);
int PixelsToTwips(int pixels);

struct TwipRect {
    int Left = 0;
    int Top = 0;
    int Width = 0;
    int Height = 0;
};

// Design positions of the card's controls.
namespace CardDesign {
inline constexpr int Width = 3855;
inline constexpr int Height = 1365;
inline constexpr TwipRect Frame1{0, -15, 3855, 1335};
inline constexpr TwipRect txtWeight{1335, 240, 615, 240};
inline constexpr TwipRect txtLimit{1335, 780, 615, 240};
inline constexpr TwipRect lblExclude{1560, 600, 1995, 195};
inline constexpr TwipRect lblPriority{2715, 240, 855, 195};
inline constexpr TwipRect lblLimit{1350, 780, 120, 195};
inline constexpr TwipRect lblWeight{1335, 240, 120, 195};
inline constexpr TwipRect lblUnitName{0, 0, 3900, 195};
inline constexpr TwipRect lblNumbers{2280, 780, 1290, 195};
inline constexpr TwipRect imgUnit{120, 240, 1080, 1080};
inline constexpr TwipRect Line1{0, 1320, 3840, 0};
inline constexpr TwipRect sldPriority{1200, 480, 2655, 255};
inline constexpr TwipRect sldNumbers{1200, 1035, 2655, 255};
} // namespace CardDesign

// The controls that the card's layout moves.
struct CardLayout {
    TwipRect lblExclude = CardDesign::lblExclude;
    TwipRect Frame1 = CardDesign::Frame1;
    TwipRect lblUnitName = CardDesign::lblUnitName;
    TwipRect lblPriority = CardDesign::lblPriority;
    TwipRect lblNumbers = CardDesign::lblNumbers;
    TwipRect sldPriority = CardDesign::sldPriority;
    TwipRect sldNumbers = CardDesign::sldNumbers;
};

// Where the excluded notice goes for a card of this inner size.
TwipRect ExcludedNoticePlace(int innerWidth, int innerHeight, TwipRect notice);
// The card's layout for this inner size; a step whose result would be a
// negative width keeps the previous value (the step is skipped).
CardLayout LayOutCard(int innerWidth, int innerHeight, CardLayout previous = {});

} // namespace vantrel
