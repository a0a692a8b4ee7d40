#include "profile/profile_numbers.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace vantrel {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// The text from to_chars at [begin, end) with "." made `sep`; "-0" reads as
// 0 in a profile, so it is written as 0. Returns the new end.
char* Localise(char* begin, char* end, std::string_view sep) {
    if (end - begin == 2 && begin[0] == '-' && begin[1] == '0') {
        begin[0] = '0';
        return begin + 1;
    }
    char* dot = std::find(begin, end, '.');
    if (dot == end) return end;
    const auto tail = static_cast<std::size_t>(end - dot - 1);
    std::memmove(dot + sep.size(), dot + 1, tail);
    std::memcpy(dot, sep.data(), sep.size());
    return dot + sep.size() + tail;
}

std::size_t SkipDigits(std::string_view s, std::size_t i) {
    while (i < s.size() && IsDigit(s[i]))
        ++i;
    return i;
}

// Whole values below 10^digits print the same in general form as integers,
// which is much quicker to produce.
template <class T> bool IsWholeBelow(T value, T limit) {
    return value > -limit && value < limit && value == std::trunc(value);
}
template <class T> char* WriteWhole(char* out, T value) {
    if (value == 0) {
        *out = '0';
        return out + 1;
    }
    return std::to_chars(out, out + 24, static_cast<long long>(value)).ptr;
}

// A weight that is not whole, with 7 significant digits in fixed notation,
// as the general form writes it when the value is at least 1e-4 (smaller
// ones need an exponent); nullptr for those. The value times a power of ten
// of at most 10^10 is exact in a double (24 bits times 5^10 fits in 53),
// so rounding it to a whole number rounds the decimal as to_chars does,
// ties to even.
char* WriteFixedWeight(char* out, float weight, std::string_view sep) {
    static constexpr double Powers[] = {1e-4, 1e-3, 1e-2, 1e-1, 1e0, 1e1, 1e2, 1e3,
                                        1e4,  1e5,  1e6,  1e7,  1e8, 1e9, 1e10};
    const double a = std::fabs(static_cast<double>(weight));
    if (!(a >= 1e-4) || !(a < 1e7)) return nullptr;
    int e = -4; // the decimal exponent of the leading digit
    while (e < 6 && a >= Powers[e + 5])
        ++e;
    auto digits = static_cast<std::uint64_t>(std::nearbyint(a * Powers[4 + 6 - e]));
    if (digits == 10000000) { // rounded up to the next power of ten
        digits = 1000000;
        ++e;
    }
    char d[7];
    for (int k = 6; k >= 0; --k, digits /= 10)
        d[k] = static_cast<char>('0' + digits % 10);
    int fracEnd = 7; // significant digits after trailing zeros are cut
    const int intDigits = e >= 0 ? e + 1 : 0;
    while (fracEnd > intDigits && d[fracEnd - 1] == '0')
        --fracEnd;
    if (weight < 0) *out++ = '-';
    if (e >= 0) {
        std::memcpy(out, d, static_cast<std::size_t>(intDigits));
        out += intDigits;
    } else {
        *out++ = '0';
    }
    if (fracEnd > intDigits) {
        std::memcpy(out, sep.data(), sep.size());
        out += sep.size();
        for (int z = e + 1; z < 0; ++z)
            *out++ = '0';
        std::memcpy(out, d + intDigits, static_cast<std::size_t>(fracEnd - intDigits));
        out += fracEnd - intDigits;
    }
    return out;
}

// The common case of a value text: an optional "-", then at most 15 digits
// with at most one one-character separator among or after them. Its value is
// the digits as a whole number divided by a power of ten; both are exact
// doubles, so the one division rounds correctly, as from_chars would.
bool PlainDecimal(std::string_view text, std::string_view sep, double& out) {
    static constexpr double Powers[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                        1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    if (sep.size() != 1 || text.empty() || text.size() > 17) return false;
    std::size_t i = text[0] == '-' ? 1 : 0;
    std::uint64_t digits = 0;
    int count = 0;
    int fraction = -1; // digits after the separator; -1 before it
    for (; i < text.size(); ++i) {
        char c = text[i];
        if (IsDigit(c)) {
            digits = digits * 10 + static_cast<std::uint64_t>(c - '0');
            ++count;
            if (fraction >= 0) ++fraction;
        } else if (c == sep[0] && fraction < 0) {
            fraction = 0;
        } else {
            return false;
        }
    }
    if (count == 0 || count > 15) return false;
    double value = static_cast<double>(digits);
    if (fraction > 0) value /= Powers[fraction];
    out = text[0] == '-' ? -value : value;
    return true;
}

} // namespace

std::string DecimalSeparator() {
    const std::lconv* conv = std::localeconv();
    if (!conv || !conv->decimal_point || !*conv->decimal_point) return ".";
    return conv->decimal_point;
}

char* WriteWeight(char* out, float weight, std::string_view sep) {
    if (IsWholeBelow(weight, 1e7f)) return WriteWhole(out, weight);
    if (char* end = WriteFixedWeight(out, weight, sep)) return end;
    auto res = std::to_chars(out, out + 32, weight, std::chars_format::general, 7);
    return Localise(out, res.ptr, sep);
}

char* WriteGeneral15(char* out, double value, std::string_view sep) {
    if (IsWholeBelow(value, 1e15)) return WriteWhole(out, value);
    auto res = std::to_chars(out, out + 32, value, std::chars_format::general, 15);
    return Localise(out, res.ptr, sep);
}

std::string WeightText(float weight, std::string_view sep) {
    std::string text(NumberTextMax + sep.size(), '\0');
    text.resize(static_cast<std::size_t>(WriteWeight(text.data(), weight, sep) - text.data()));
    return text;
}

std::string General15Text(double value, std::string_view sep) {
    std::string text(NumberTextMax + sep.size(), '\0');
    text.resize(static_cast<std::size_t>(WriteGeneral15(text.data(), value, sep) - text.data()));
    return text;
}

double PlanLimit(int percent, float limit) {
    return (static_cast<double>(percent) / 100.0) * static_cast<double>(limit);
}

std::string EasyLimitText(int percent, float limit, std::string_view sep) {
    return General15Text(std::floor(PlanLimit(percent, limit)), sep);
}

std::string HardLimitText(int percent, float limit, std::string_view sep) {
    return General15Text(PlanLimit(percent, limit), sep);
}

std::optional<double> ParseRegionalNumber(std::string_view text, std::string_view sep) {
    if (sep.empty()) sep = ".";
    if (double plain; PlainDecimal(text, sep, plain)) return plain;
    // Check the form first, noting where its parts are.
    std::size_t i = 0;
    const bool plus = !text.empty() && text[0] == '+';
    if (!text.empty() && (text[0] == '+' || text[0] == '-')) ++i;
    const std::size_t intStart = i;
    i = SkipDigits(text, i);
    const std::size_t intDigits = i - intStart;
    std::size_t sepAt = std::string_view::npos;
    std::size_t fracDigits = 0;
    if (text.substr(i, sep.size()) == sep) {
        sepAt = i;
        std::size_t fracStart = i + sep.size();
        i = SkipDigits(text, fracStart);
        fracDigits = i - fracStart;
    }
    if (intDigits + fracDigits == 0) return std::nullopt;
    long long exponent = 0;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        bool negative = false;
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
        std::size_t digitsStart = i;
        i = SkipDigits(text, i);
        if (i == digitsStart) return std::nullopt;
        for (std::size_t k = digitsStart; k < i && exponent < 100000; ++k)
            exponent = exponent * 10 + (text[k] - '0');
        if (negative) exponent = -exponent;
    }
    if (i != text.size()) return std::nullopt;

    // from_chars reads "." and no "+": convert the text when it differs.
    std::string converted;
    std::string_view plain = text;
    if (plus || (sepAt != std::string_view::npos && sep != ".")) {
        converted.assign(text.substr(plus ? 1 : 0));
        if (sepAt != std::string_view::npos)
            converted.replace(sepAt - (plus ? 1 : 0), sep.size(), ".");
        plain = converted;
    }
    double value = 0;
    auto res = std::from_chars(plain.data(), plain.data() + plain.size(), value);
    if (res.ec == std::errc::result_out_of_range) {
        // Overflow or underflow of a double: tell them apart by the magnitude
        // of the leading significant digit.
        std::string_view digits = text.substr(intStart, intDigits);
        std::size_t lead = digits.find_first_not_of('0');
        long long magnitude =
            lead == std::string_view::npos ? -1 : static_cast<long long>(digits.size() - lead);
        if (magnitude + exponent > 0) return std::nullopt;
        return 0.0;
    }
    if (res.ec != std::errc() || res.ptr != plain.data() + plain.size()) return std::nullopt;
    if (!std::isfinite(static_cast<float>(value))) return std::nullopt;
    return value;
}

std::string KeepDigits(std::string_view value) {
    std::string digits;
    for (char c : value)
        if (IsDigit(c)) digits.push_back(c);
    return digits.empty() ? std::string("0") : digits;
}

float ProfileNumber(std::string_view text, std::string_view sep) {
    if (double plain; PlainDecimal(text, sep.empty() ? "." : sep, plain))
        return static_cast<float>(plain);
    if (auto v = ParseRegionalNumber(text, sep)) return static_cast<float>(*v);
    std::string digits = KeepDigits(text);
    double value = 0;
    auto res = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (res.ec != std::errc() || value > FLT_MAX) return FLT_MAX;
    return static_cast<float>(value);
}

} // namespace vantrel
