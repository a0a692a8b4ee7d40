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

std::string WithMnemonic(std::string_view caption, std::string& taken) {
    std::string text;
    bool marked = false;
    for (char c : caption) {
        const char upper = UpperChar(c);
        const bool letter = (upper >= 'A' && upper <= 'Z') || (upper >= '0' && upper <= '9');
        if (!marked && letter && taken.find(upper) == std::string::npos) {
            text += '&';
            taken += upper;
            marked = true;
        }
        text += c;
        if (c == '&') text += '&';
    }
    return text;
}

std::vector<int> CollectCandidates(const Definitions& defs, std::string_view keywords,
                                   std::string_view side) {
    std::vector<int> units;
    const int last = defs.Units.UBound();
    for (int i = 1; i <= last; ++i) {
        const vtUnit& unit = defs.Units[i];
        if (InCategory(unit.TEDClass, keywords) && SameSide(unit.Side, side)) units.push_back(i);
    }
    std::stable_sort(units.begin(), units.end(), [&defs](int a, int b) {
        return UnitOrderLess(defs.Units[a], defs.Units[b]);
    });
    return units;
}

std::vector<std::string> BoardTitles(const Definitions& defs, const std::vector<int>& units) {
    // In board order, units of one name (without case) are neighbours.
    std::vector<std::string> titles(units.size());
    auto sameName = [&](std::size_t a, std::size_t b) {
        return b < units.size() &&
               NaturalCompare(defs.Units[units[a]].Name, defs.Units[units[b]].Name) == 0 &&
               defs.Units[units[a]].Name.size() == defs.Units[units[b]].Name.size();
    };
    for (std::size_t i = 0; i < units.size(); ++i) {
        const vtUnit& unit = defs.Units[units[i]];
        const bool shared = sameName(i, i + 1) || (i > 0 && sameName(i, i - 1));
        titles[i] = shared ? unit.Name + " (" + unit.UnitName + ")" : unit.Name;
    }
    return titles;
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

RowSpan VisibleRows(int viewTop, int viewHeight, int pitch, int count) {
    RowSpan span;
    if (pitch <= 0 || count <= 0 || viewHeight <= 0) return span;
    const long long top = std::max(viewTop, 0);
    const long long bottom = static_cast<long long>(viewTop) + viewHeight; // exclusive
    if (bottom <= top) return span;
    const long long first = top / pitch;
    if (first >= count) return span;
    span.first = static_cast<int>(first);
    span.last = static_cast<int>(std::min<long long>((bottom - 1) / pitch, count - 1));
    return span;
}

int ScrollShowingRow(int row, int value, int pitch, int viewHeight) {
    const long long top = static_cast<long long>(row) * pitch;
    if (top < value) return static_cast<int>(top);
    if (top + pitch > static_cast<long long>(value) + viewHeight)
        return static_cast<int>(std::min(top + pitch - viewHeight, top));
    return value;
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
                      Progress& progress, ResourceGauge& gauge) {
    BoardBuild build;
    std::string_view keywords = KeywordsForMenuCaption(menuCaption);
    progress.SetStatus(std::string(GettingUnitsStatus));
    progress.Show();
    const std::vector<int> list = CollectCandidates(defs, keywords, defs.CurrentSide);
    progress.SetMaximum(static_cast<int>(list.size()));
    progress.SetValue(0);
    ResourceGuard guard;
    // The progress form is repainted at most once a frame: repainting it for
    // every one of thousands of entries would cost more than the build.
    using Steady = std::chrono::steady_clock;
    auto lastRepaint = Steady::now() - std::chrono::seconds(1);
    try {
        build.unitIndices.reserve(list.size());
        for (int index : list) {
            if (!guard.Check(gauge, messages)) {
                progress.ProcessEvents();
                build.stoppedEarly = true;
                break;
            }
            build.unitIndices.push_back(index);
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
