// The unit board's rules without widgets: which units get a card and in what
// order, the geometry in twips (rows, scroll range), and the resource guard.
#pragma once

#include "base/ports.h"
#include "catalogue/definitions.h"
#include "forms/unit_card_rules.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vantrel {

inline constexpr std::string_view AllCaption = "&All";
inline constexpr std::string_view AllQuestion =
    "This process may take a few minutes to complete and may cause your system to not respond "
    "temporarily.\r\n\r\nContinue?";
inline constexpr std::string_view GettingUnitsStatus = "Getting units...";
inline constexpr std::string_view ResourcesQuestion =
    "Not all units have been loaded due to decrease in available resources.\r\n\r\n"
    "YES to display currently loaded unit\r\nNO to attempt to finish all units\r\n\r\n"
    "Display currently loaded units?";
inline constexpr std::string_view NotEnoughResources =
    "Not enough system resources (GDI) to finish operation.";
inline constexpr std::string_view ProgramTitle = "Vantrel";

// Keyword list of a Type-menu caption ("&Kbots" gives "KBOT"; unknown: "").
std::string_view KeywordsForMenuCaption(std::string_view menuCaption);

// One entry of the sort list: "Arm Flash;12".
std::string SortEntry(const vtUnit& unit, int unitIndex);
// The unit index after the entry's first ";" (0 when there is none).
int EntryUnitIndex(std::string_view entry);

struct SortedEntry {
    std::string text;
    int unitIndex = 0;
};
// Every unit whose TEDClass occurs in `keywords` (all sides), in ascending
// text order of the entries ignoring letter case.
std::vector<SortedEntry> CollectCandidates(const Definitions& defs, std::string_view keywords);

// ---------------------------------------------------------------------------
// Geometry (twips)
// ---------------------------------------------------------------------------
namespace BoardDesign {
inline constexpr int BannerHeight = 255;    // picBorder
inline constexpr int ScrollBarWidth = 255;  // Vscroll1
inline constexpr int BuildRowPitch = 1365;  // a card while the board is being built
inline constexpr int LayoutRowPitch = 1350; // after every layout pass
inline constexpr int ScrollLargeChange = 1365;
inline constexpr int ScrollSmallChange = 136;
inline constexpr int ScrollMin = -255;
inline constexpr int StartCardAreaTop = 255;
} // namespace BoardDesign

// BoardTop after a layout pass over `cardCount` cards.
std::int32_t LaidOutBoardTop(int cardCount);

struct ScrollSettings {
    int Min = 0;
    int Max = 0;
    int Value = 0;
    bool Enabled = false;
    int CardAreaHeight = 0;
};
// The scroll bar and card area for a board `boardTop` high (all its rows) in
// a window `innerHeight` high whose banner is `bannerHeight` high. Value is
// the start (the first card right below the banner). A board that fits below
// the banner, an empty one too, has no range: Max = Min, bar disabled.
ScrollSettings BoardScroll(std::int32_t boardTop, int innerHeight,
                           int bannerHeight = BoardDesign::BannerHeight);
// Top of the card area for a scroll bar value (0 shows at -bannerHeight).
int CardAreaTop(int scrollValue, int bannerHeight = BoardDesign::BannerHeight);
// The scroll value nearest to `value` (within `scroll`'s range) that shows
// the whole of `row` between the banner and the bottom of the window.
int ScrollShowingRow(int row, int value, const ScrollSettings& scroll, int innerHeight,
                     int bannerHeight = BoardDesign::BannerHeight);

// The row a step from `row` leads to on a board of `count` rows (kept on the
// board; -1 when the board is empty).
int StepRow(int row, CardStep step, int count);

// Rows of the card area (pitch `pitch`, `count` rows, area `areaHeight`
// high) that meet the window [viewTop, viewTop + viewHeight) measured in the
// card area's own coordinates. first > last when none.
struct RowSpan {
    int first = 0;
    int last = -1;
    bool Contains(int row) const { return row >= first && row <= last; }
};
RowSpan VisibleRows(int viewTop, int viewHeight, int pitch, int count, int areaHeight);

// ---------------------------------------------------------------------------
// Resource guard
// ---------------------------------------------------------------------------
// The three free-resource figures the guard reads, as whole percentages.
enum class ResourceKind { System = 0, Graphics = 1, UserInterface = 2 };

class ResourceGauge {
  public:
    virtual ~ResourceGauge() = default;
    virtual int FreePercent(ResourceKind kind) = 0;
};

// Free share of the machine's memory (MemAvailable / MemTotal); 100 when the
// figures cannot be read.
int MemoryFreePercent();
// Free share of this process's file handles (open descriptors against the
// soft RLIMIT_NOFILE); 100 when unknown.
int HandlesFreePercent();

// The desktop's figures: System is the free memory, UserInterface the free
// file handles, Graphics whatever `graphics` reports (the window's live
// widgets against a budget; 100 without it). Each figure is re-read at most
// every 25 ms, so checking it for every entry of a large board stays cheap.
class SystemResourceGauge : public ResourceGauge {
  public:
    int (*graphics)() = nullptr;
    int FreePercent(ResourceKind kind) override;

  private:
    std::array<int, 3> figures_{100, 100, 100};
    std::array<std::chrono::steady_clock::time_point, 3> readAt_{};
    std::array<bool, 3> read_{};
};

// Asks when a figure is at or below the threshold; No halves the threshold.
class ResourceGuard {
  public:
    // True: go on with the next entry. False: the user chose to stop.
    bool Check(ResourceGauge& gauge, Messages& messages);
    int Threshold() const { return threshold_; }

  private:
    int threshold_ = 20;
};

// ---------------------------------------------------------------------------
// The build (Type handler steps 7 to 13)
// ---------------------------------------------------------------------------
struct BoardBuild {
    std::vector<int> unitIndices; // one per card, in board order
    bool declined = false;        // "&All" answered No: nothing else happened
    bool stoppedEarly = false;    // resource guard or out of memory
};

// Asks the "&All" question (unless `askAll` is false: the player already
// answered it for this board), shows the progress form, collects and sorts
// the candidates, and takes every candidate of defs.CurrentSide (any case)
// in list order. Showing a unit never writes it: the units and Changed stay
// as they are. BoardTop grows by one build row per card. Stopping early
// closes the progress form and shows the "not enough resources" message; the
// caller finishes the board either way.
BoardBuild BuildBoard(Definitions& defs, std::string_view menuCaption, Messages& messages,
                      Progress& progress, ResourceGauge& gauge, bool askAll = true);

} // namespace vantrel
