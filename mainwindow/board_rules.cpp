#include "mainwindow/board_rules.h"

#include "base/text.h"

#include <sys/resource.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <new>
#include <sstream>

namespace vantrel {

std::string_view KeywordsForMenuCaption(std::string_view menuCaption) {
    for (const Category& c : Categories)
        if (c.MenuCaption == menuCaption) return c.Keywords;
    return {};
}

std::string SortEntry(const vtUnit& unit, int unitIndex) {
    return ProperCase(unit.Side) + " " + ProperCase(unit.Name) + ";" + std::to_string(unitIndex);
}

int EntryUnitIndex(std::string_view entry) {
    auto semi = entry.find(';');
    if (semi == std::string_view::npos) return 0;
    std::string_view digits = entry.substr(semi + 1);
    int value = 0;
    auto res = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return res.ec == std::errc{} ? value : 0;
}

std::vector<SortedEntry> CollectCandidates(const Definitions& defs, std::string_view keywords) {
    struct Keyed {
        std::string key;
        SortedEntry entry;
    };
    std::vector<Keyed> list;
    const int last = defs.Units.UBound();
    for (int i = 1; i <= last; ++i) {
        const vtUnit& unit = defs.Units[i];
        if (!InCategory(unit.TEDClass, keywords)) continue;
        std::string text = SortEntry(unit, i);
        std::string key = LCase(text);
        list.push_back({std::move(key), {std::move(text), i}});
    }
    std::stable_sort(list.begin(), list.end(),
                     [](const Keyed& a, const Keyed& b) { return a.key < b.key; });
    std::vector<SortedEntry> out;
    out.reserve(list.size());
    for (Keyed& k : list)
        out.push_back(std::move(k.entry));
    return out;
}

std::int32_t LaidOutBoardTop(int cardCount) {
    return static_cast<std::int32_t>(cardCount) * BoardDesign::LayoutRowPitch;
}

ScrollSettings BoardScroll(std::int32_t boardTop, int innerHeight, int bannerHeight) {
    ScrollSettings s;
    s.CardAreaHeight = 2 * boardTop;
    s.Min = -bannerHeight;
    s.Value = s.Min;
    s.Enabled = boardTop > innerHeight - bannerHeight;
    s.Max = s.Enabled ? boardTop - (innerHeight - bannerHeight) : s.Min;
    return s;
}

int CardAreaTop(int scrollValue, int bannerHeight) {
    return scrollValue == 0 ? -bannerHeight : -scrollValue;
}

int ScrollShowingRow(int row, int value, const ScrollSettings& scroll, int innerHeight,
                     int bannerHeight) {
    const int pitch = BoardDesign::LayoutRowPitch;
    const int top = CardAreaTop(value, bannerHeight) + row * pitch; // in the window
    if (top < bannerHeight)
        value = row * pitch - bannerHeight;
    else if (top + pitch > innerHeight) // a card taller than the window shows its top
        value = std::min((row + 1) * pitch - innerHeight, row * pitch - bannerHeight);
    return std::clamp(value, scroll.Min, std::max(scroll.Min, scroll.Max));
}

int StepRow(int row, CardStep step, int count) {
    if (count <= 0) return -1;
    switch (step) {
    case CardStep::Next:
        row += 1;
        break;
    case CardStep::Previous:
        row -= 1;
        break;
    case CardStep::First:
        row = 0;
        break;
    case CardStep::Last:
        row = count - 1;
        break;
    }
    return std::clamp(row, 0, count - 1);
}

RowSpan VisibleRows(int viewTop, int viewHeight, int pitch, int count, int areaHeight) {
    RowSpan span;
    if (pitch <= 0 || count <= 0 || viewHeight <= 0) return span;
    long long top = std::max(viewTop, 0);
    long long bottom = std::min<long long>(static_cast<long long>(viewTop) + viewHeight,
                                           areaHeight); // exclusive
    if (bottom <= top) return span;
    long long first = top / pitch;
    long long last = (bottom - 1) / pitch;
    if (first >= count) return span;
    span.first = static_cast<int>(first);
    span.last = static_cast<int>(std::min<long long>(last, count - 1));
    return span;
}

namespace {

int Percent(double freeShare) {
    if (!(freeShare >= 0)) return 100;
    if (freeShare > 1) freeShare = 1;
    return static_cast<int>(freeShare * 100.0);
}

} // namespace

int MemoryFreePercent() {
    std::ifstream in("/proc/meminfo");
    if (!in) return 100;
    std::string line;
    double total = 0, available = -1;
    while (std::getline(in, line)) {
        std::istringstream fields(line);
        std::string key;
        double kb = 0;
        fields >> key >> kb;
        if (key == "MemTotal:") total = kb;
        if (key == "MemAvailable:") available = kb;
    }
    if (total <= 0 || available < 0) return 100;
    return Percent(available / total);
}

int HandlesFreePercent() {
    rlimit limit{};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur == RLIM_INFINITY ||
        limit.rlim_cur == 0)
        return 100;
    std::error_code ec;
    std::size_t open = 0;
    for (std::filesystem::directory_iterator it("/proc/self/fd", ec), end; !ec && it != end;
         it.increment(ec))
        ++open;
    if (ec) return 100;
    double used = static_cast<double>(open) / static_cast<double>(limit.rlim_cur);
    return Percent(1.0 - used);
}

int SystemResourceGauge::FreePercent(ResourceKind kind) {
    auto k = static_cast<std::size_t>(kind);
    auto now = std::chrono::steady_clock::now();
    if (!read_[k] || now - readAt_[k] >= std::chrono::milliseconds(25)) {
        switch (kind) {
        case ResourceKind::System:
            figures_[k] = MemoryFreePercent();
            break;
        case ResourceKind::UserInterface:
            figures_[k] = HandlesFreePercent();
            break;
        case ResourceKind::Graphics:
            figures_[k] = graphics ? graphics() : 100;
            break;
        }
        read_[k] = true;
        readAt_[k] = now;
    }
    return figures_[k];
}

bool ResourceGuard::Check(ResourceGauge& gauge, Messages& messages) {
    const ResourceKind order[] = {ResourceKind::Graphics, ResourceKind::System,
                                  ResourceKind::UserInterface};
    bool low = false;
    for (ResourceKind kind : order)
        if (gauge.FreePercent(kind) <= threshold_) low = true;
    if (!low) return true;
    MsgAnswer answer = messages.Show(std::string(ResourcesQuestion), std::string(ProgramTitle),
                                     MsgButtons::YesNo, MsgIcon::Information);
    if (answer == MsgAnswer::Yes) return false;
    threshold_ /= 2;
    return true;
}

BoardBuild BuildBoard(Definitions& defs, std::string_view menuCaption, Messages& messages,
                      Progress& progress, ResourceGauge& gauge, bool askAll) {
    BoardBuild build;
    std::string_view keywords = KeywordsForMenuCaption(menuCaption);
    if (askAll && menuCaption == AllCaption &&
        messages.Show(std::string(AllQuestion), std::string(ProgramTitle), MsgButtons::YesNo,
                      MsgIcon::Question) != MsgAnswer::Yes) {
        build.declined = true;
        return build;
    }
    progress.SetStatus(std::string(GettingUnitsStatus));
    progress.Show();
    progress.SetMaximum(defs.Units.UBound());
    progress.SetValue(0);

    std::vector<SortedEntry> list = CollectCandidates(defs, keywords);
    ResourceGuard guard;
    // The progress form is repainted at most once a frame: repainting it for
    // every one of thousands of entries would cost more than the build.
    using Steady = std::chrono::steady_clock;
    auto lastRepaint = Steady::now() - std::chrono::seconds(1);
    try {
        for (const SortedEntry& entry : list) {
            if (!guard.Check(gauge, messages)) {
                progress.ProcessEvents();
                build.stoppedEarly = true;
                break;
            }
            int index = EntryUnitIndex(entry.text);
            if (SameSide(defs.Units[index].Side, defs.CurrentSide)) {
                build.unitIndices.push_back(index);
                defs.BoardTop += BoardDesign::BuildRowPitch;
            }
            progress.AddValue(1);
            if (Steady::now() - lastRepaint >= std::chrono::milliseconds(16)) {
                progress.Repaint();
                lastRepaint = Steady::now();
            }
        }
    } catch (const std::bad_alloc&) {
        build.stoppedEarly = true;
    }
    if (build.stoppedEarly) {
        progress.Close();
        messages.Show(std::string(NotEnoughResources), std::string(ProgramTitle), MsgButtons::OK,
                      MsgIcon::None);
    } else {
        progress.Repaint();
    }
    return build;
}

} // namespace vantrel
