// The unit board's rules without widgets: which units get a card, in what
// order and under which titles, which rows are in view, and the resource guard.
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

// A menu caption with an access key: the first letter of `caption` not yet
// in `taken` (without case) is marked and added to `taken`; a caption with
// no free letter gets none. A '&' of the caption is doubled.
std::string WithMnemonic(std::string_view caption, std::string& taken);

// Every unit of `side` (any case) whose TEDClass occurs in `keywords`, in
// board order (UnitOrderLess, then catalogue order).
std::vector<int> CollectCandidates(const Definitions& defs, std::string_view keywords,
                                   std::string_view side);

// The cards' titles for a board of these units: the name, and where two
// units of the board share a name (without case), the name and UnitName
// ("Commander (ARMCOM2)").
std::vector<std::string> BoardTitles(const Definitions& defs, const std::vector<int>& units);

// The row a step from `row` leads to on a board of `count` rows (kept on the
// board; -1 when the board is empty).
int StepRow(int row, CardStep step, int count);

// Rows of a board of `count` rows, `pitch` pixels each, that meet the view
// [viewTop, viewTop + viewHeight). first > last when none.
struct RowSpan {
    int first = 0;
    int last = -1;
    bool Contains(int row) const { return row >= first && row <= last; }
};
RowSpan VisibleRows(int viewTop, int viewHeight, int pitch, int count);

// The scroll value nearest to `value` that shows the whole of `row` in a
// view `viewHeight` high (a row taller than the view shows its top).
int ScrollShowingRow(int row, int value, int pitch, int viewHeight);

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
    bool stoppedEarly = false;    // resource guard or out of memory
};

// Shows the progress form, collects and sorts the candidates of
// defs.CurrentSide and takes them in board order. Showing a unit never writes
// it: the units and Changed stay as they are. Stopping early closes the
// progress form and shows the "not enough resources" message; the caller
// finishes the board either way.
BoardBuild BuildBoard(Definitions& defs, std::string_view menuCaption, Messages& messages,
                      Progress& progress, ResourceGauge& gauge);

} // namespace vantrel
