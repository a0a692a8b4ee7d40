#include "forms/unit_card_rules.h"

#include "base/text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace vantrel {

int RoundHalfEven(double value) {
    if (!std::isfinite(value)) return 0;
    double r = std::nearbyint(value);
    if (r > std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
    if (r < std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
    return static_cast<int>(r);
}

SliderSettings PrioritySettings(int weightMax) {
    SliderSettings s;
    s.Max = std::max(0, weightMax) * 100;
    s.SmallChange = std::max(1, s.Max / 100);
    s.LargeChange = std::max(1, s.Max / 10);
    s.TickFrequency = s.LargeChange;
    return s;
}
SliderSettings NumbersSettings(int limitMax) {
    SliderSettings s;
    s.Max = std::max(0, limitMax);
    s.SmallChange = 1;
    s.LargeChange = std::max(1, RoundHalfEven(s.Max / 10.0));
    s.TickFrequency = s.LargeChange;
    return s;
}
SliderSettings PrioritySettings(const Definitions& defs) {
    return PrioritySettings(defs.Options.WeightMax);
}
SliderSettings NumbersSettings(const Definitions& defs) {
    return NumbersSettings(defs.Options.LimitMax);
}

int PriorityPosition(float weight, const SliderSettings& slider) {
    return slider.Clamp(RoundHalfEven(static_cast<double>(weight) * 100.0));
}
int NumbersPosition(float limit, const SliderSettings& slider) {
    return slider.Clamp(RoundHalfEven(static_cast<double>(limit)));
}

bool ApplyPriorityPosition(Definitions& defs, vtUnit& unit, int position) {
    const auto weight = static_cast<float>(position / 100.0);
    if (unit.Weight == weight) return false;
    unit.Weight = weight;
    defs.Profile.Changed = true;
    return true;
}
bool ApplyNumbersPosition(Definitions& defs, vtUnit& unit, int position) {
    const auto limit = static_cast<float>(position);
    if (unit.Limit == limit) return false;
    unit.Limit = limit;
    defs.Profile.Changed = true;
    return true;
}

int SliderWheelPosition(int value, int notches, const SliderSettings& slider) {
    const long long moved = value + static_cast<long long>(notches) * slider.SmallChange;
    return slider.Clamp(static_cast<int>(std::clamp<long long>(moved, slider.Min, slider.Max)));
}

std::optional<double> EntryNumber(std::string_view text) {
    // Only digits and at most one "." get through the filter; anything else
    // (a pasted text) counts as no number.
    bool digit = false;
    int dots = 0;
    for (char c : text) {
        if (c >= '0' && c <= '9')
            digit = true;
        else if (c == '.')
            ++dots;
        else
            return std::nullopt;
    }
    if (!digit || dots > 1) return std::nullopt;
    double value = 0;
    std::string s(text);
    if (s.front() == '.') s.insert(s.begin(), '0');
    if (s.back() == '.') s.pop_back();
    auto res = std::from_chars(s.data(), s.data() + s.size(), value);
    if (res.ec != std::errc{} || res.ptr != s.data() + s.size()) return std::nullopt;
    return value;
}

std::optional<int> CommitWeightText(std::string& text, const SliderSettings& slider) {
    auto number = EntryNumber(text);
    if (!number) return std::nullopt;
    if (*number * 100.0 > slider.Max) {
        text = FloatText(static_cast<float>(slider.Max / 100.0));
        number = slider.Max / 100.0;
    }
    return slider.Clamp(RoundHalfEven(*number * 100.0));
}

std::optional<int> CommitLimitText(std::string& text, const SliderSettings& slider, bool truncate) {
    auto number = EntryNumber(text);
    if (!number) return std::nullopt;
    if (*number > slider.Max) {
        text = std::to_string(slider.Max);
        number = slider.Max;
    }
    if (truncate) {
        number = std::trunc(*number);
        text = FloatText(static_cast<float>(*number));
    }
    return slider.Clamp(RoundHalfEven(*number));
}

std::optional<int> ManualPriority(std::string_view answer) {
    std::string s = TrimBlanks(answer);
    if (s.empty()) return std::nullopt;
    double value = 0;
    const char* first = s.data();
    if (*first == '+') ++first;
    auto res = std::from_chars(first, s.data() + s.size(), value);
    if (res.ec != std::errc{} || res.ptr != s.data() + s.size() || !std::isfinite(value))
        return std::nullopt;
    int whole = value > 1e6 ? 1000000 : (value < -1e6 ? -1000000 : RoundHalfEven(value));
    if (whole > 255) return 255;
    if (whole < 1) return 0;
    return whole;
}

namespace {
double Luminance(Rgb c) {
    auto channel = [](int v) {
        double s = std::clamp(v, 0, 255) / 255.0;
        return s <= 0.04045 ? s / 12.92 : std::pow((s + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * channel(c.r) + 0.7152 * channel(c.g) + 0.0722 * channel(c.b);
}
} // namespace

double ContrastRatio(Rgb a, Rgb b) {
    double la = Luminance(a), lb = Luminance(b);
    if (la < lb) std::swap(la, lb);
    return (la + 0.05) / (lb + 0.05);
}

Rgb ReadableText(Rgb back, Rgb preferred) {
    if (ContrastRatio(back, preferred) >= ReadableContrast) return preferred;
    return ContrastRatio(back, Black) >= ContrastRatio(back, White) ? Black : White;
}

namespace {
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
} // namespace

int NaturalCompare(std::string_view a, std::string_view b) {
    std::size_t i = 0, j = 0;
    while (i < a.size() && j < b.size()) {
        if (IsDigit(a[i]) && IsDigit(b[j])) {
            // Whole runs of digits compare as numbers: leading zeros aside,
            // the longer run is the larger number.
            std::size_t si = i, sj = j;
            while (si < a.size() && a[si] == '0') ++si;
            while (sj < b.size() && b[sj] == '0') ++sj;
            std::size_t ei = si, ej = sj;
            while (ei < a.size() && IsDigit(a[ei])) ++ei;
            while (ej < b.size() && IsDigit(b[ej])) ++ej;
            if (ei - si != ej - sj) return ei - si < ej - sj ? -1 : 1;
            if (int c = a.substr(si, ei - si).compare(b.substr(sj, ej - sj)); c != 0)
                return c < 0 ? -1 : 1;
            i = ei;
            j = ej;
            continue;
        }
        const auto ca = static_cast<unsigned char>(UpperChar(a[i]));
        const auto cb = static_cast<unsigned char>(UpperChar(b[j]));
        if (ca != cb) return ca < cb ? -1 : 1;
        ++i;
        ++j;
    }
    if (i < a.size()) return 1;
    if (j < b.size()) return -1;
    return 0;
}

bool UnitOrderLess(const vtUnit& a, const vtUnit& b) {
    if (int c = NaturalCompare(a.Name, b.Name); c != 0) return c < 0;
    return NaturalCompare(a.UnitName, b.UnitName) < 0;
}

} // namespace vantrel
