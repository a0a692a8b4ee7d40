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

namespace {

// A slider over 0..max: the page step is a tenth of the option's value
// (`scaleTop`), the arrow step a tenth of the page step, a tick every tenth
// of the range; each rounded halves-to-even.
SliderSettings SettingsFor(int max, int scaleTop) {
    SliderSettings s;
    s.Min = 0;
    s.Max = max < 0 ? 0 : max;
    s.LargeChange = RoundHalfEven(scaleTop / 10.0);
    s.SmallChange = RoundHalfEven(s.LargeChange / 10.0);
    s.TickFrequency = RoundHalfEven(max / 10.0);
    return s;
}

} // namespace

SliderSettings PrioritySettings(int weightMax) {
    return SettingsFor(weightMax * 100, weightMax);
}
SliderSettings NumbersSettings(int limitMax) {
    return SettingsFor(limitMax, limitMax);
}
SliderSettings PrioritySettings(const Definitions& defs) {
    return PrioritySettings(defs.Option(optWeightMax));
}
SliderSettings NumbersSettings(const Definitions& defs) {
    return NumbersSettings(defs.Option(optLimitMax));
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
    defs.Changed = true;
    return true;
}
bool ApplyNumbersPosition(Definitions& defs, vtUnit& unit, int position) {
    const auto limit = static_cast<float>(position);
    if (unit.Limit == limit) return false;
    unit.Limit = limit;
    defs.Changed = true;
    return true;
}

int SliderKeyDelta(int keyCode, bool prioritySlider) {
    switch (keyCode) {
    case KeyUp:
        return 10;
    case KeyDown:
        return -10;
    case KeyLeft:
        return -1;
    case KeyRight:
        return 1;
    case KeyPageUp:
        return prioritySlider ? 101 : 10;
    case KeyPageDown:
        return prioritySlider ? -101 : -10;
    default:
        return 0;
    }
}

int TrackbarStep(int keyCode, const SliderSettings& slider) {
    switch (keyCode) {
    case KeyLeft:
    case KeyUp:
        return -slider.SmallChange;
    case KeyRight:
    case KeyDown:
        return slider.SmallChange;
    case KeyPageUp:
        return -slider.LargeChange;
    case KeyPageDown:
        return slider.LargeChange;
    default:
        return 0;
    }
}

int SliderKeyPosition(int value, int keyCode, bool prioritySlider, const SliderSettings& slider) {
    value = slider.Clamp(value + SliderKeyDelta(keyCode, prioritySlider));
    return slider.Clamp(value + TrackbarStep(keyCode, slider));
}

int SliderWheelPosition(int value, int notches, bool prioritySlider, const SliderSettings& slider) {
    for (; notches > 0; --notches)
        value = SliderKeyPosition(value, KeyUp, prioritySlider, slider);
    for (; notches < 0; ++notches)
        value = SliderKeyPosition(value, KeyDown, prioritySlider, slider);
    return value;
}

KeyVerdict FilterEntryKey(int charCode, std::string_view currentText) {
    if (charCode == 8) return KeyVerdict::Accept;
    if (charCode == 13) return KeyVerdict::Commit;
    if (charCode == '.')
        return currentText.find('.') == std::string_view::npos ? KeyVerdict::Accept
                                                               : KeyVerdict::Cancel;
    if (charCode >= '0' && charCode <= '9') return KeyVerdict::Accept;
    return KeyVerdict::Cancel;
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

int TwipsToPixels(int twips) {
    return RoundHalfEven(twips / static_cast<double>(TwipsPerPixel));
}
int PixelsToTwips(int pixels) {
    return pixels * TwipsPerPixel;
}

TwipRect ExcludedNoticePlace(int innerWidth, int innerHeight, TwipRect notice) {
    notice.Left =
        RoundHalfEven((innerWidth - CardDesign::imgUnit.Left - CardDesign::imgUnit.Width) / 2.0);
    notice.Top = RoundHalfEven(innerHeight / 2.0);
    return notice;
}

CardLayout LayOutCard(int innerWidth, int innerHeight, CardLayout c) {
    c.lblExclude = ExcludedNoticePlace(innerWidth, innerHeight, c.lblExclude);
    if (innerWidth >= 0 && innerHeight >= 0) c.Frame1 = {0, 0, innerWidth, innerHeight};
    if (c.Frame1.Width >= 0) c.lblUnitName = {0, 0, c.Frame1.Width, c.lblUnitName.Height};
    c.lblPriority.Left = c.Frame1.Width - c.lblPriority.Width - 250;
    c.lblNumbers.Left = c.Frame1.Width - c.lblNumbers.Width - 250;
    int sliderWidth = c.Frame1.Width - (CardDesign::imgUnit.Left + CardDesign::imgUnit.Width);
    if (sliderWidth >= 0) c.sldPriority.Width = sliderWidth;
    c.sldNumbers.Width = c.sldPriority.Width;
    c.sldPriority.Left = c.Frame1.Width - c.sldPriority.Width;
    c.sldNumbers.Left = c.Frame1.Width - c.sldNumbers.Width;
    return c;
}

} // namespace vantrel
