#include "profile/profile_numbers.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <clocale>
#include <cmath>

namespace vantrel {

namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

// A value in general form with `digits` significant digits, "." made `sep`;
// "-0" reads as 0 in a profile, so it is written as 0.
template <class T> std::string GeneralText(T value, int digits, std::string_view sep) {
    char buf[64];
    auto res = std::to_chars(buf, buf + sizeof buf, value, std::chars_format::general, digits);
    std::string text(buf, res.ptr);
    if (text == "-0") return "0";
    if (std::size_t dot = text.find('.'); dot != std::string::npos) text.replace(dot, 1, sep);
    return text;
}

std::size_t SkipDigits(std::string_view s, std::size_t i) {
    while (i < s.size() && IsDigit(s[i]))
        ++i;
    return i;
}

} // namespace

std::string DecimalSeparator() {
    const std::lconv* conv = std::localeconv();
    if (!conv || !conv->decimal_point || !*conv->decimal_point) return ".";
    return conv->decimal_point;
}

std::string WeightText(float weight, std::string_view sep) {
    return GeneralText(weight, 7, sep);
}

std::string General15Text(double value, std::string_view sep) {
    return GeneralText(value, 15, sep);
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
    if (auto v = ParseRegionalNumber(text, sep)) return static_cast<float>(*v);
    std::string digits = KeepDigits(text);
    double value = 0;
    auto res = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    if (res.ec != std::errc() || value > FLT_MAX) return FLT_MAX;
    return static_cast<float>(value);
}

} // namespace vantrel
