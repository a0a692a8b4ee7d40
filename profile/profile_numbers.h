// Number forms of AI profiles: how weights and limits are written, and how a
// value text read back becomes a number.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace vantrel {

// The decimal separator of the user's regional number settings (LC_NUMERIC,
// through localeconv()); "." in the C and English locales.
std::string DecimalSeparator();

// A weight: the 32-bit value with at most 7 significant digits, no trailing
// zeros, no separator when whole (2, 1.5, 0.75).
std::string WeightText(float weight, std::string_view sep);
// A whole or fractional value with at most 15 significant digits, no trailing
// zeros, no separator when whole. Values that need an exponent are written as
// 1.5e+20.
std::string General15Text(double value, std::string_view sep);
// The limit of a plan: x = (percent / 100) * limit in double precision. The
// easy and medium plans write x rounded down, the hard plan writes x as it is.
double PlanLimit(int percent, float limit);
std::string EasyLimitText(int percent, float limit, std::string_view sep);
std::string HardLimitText(int percent, float limit, std::string_view sep);

// A value text is numeric when it is, as a whole, an optional sign, digits
// with at most one decimal separator (at least one digit: "5", "5.", ".5",
// "-1.25") and an optional exponent ("E", optional sign, digits), and its
// value fits a 32-bit float. Spaces, thousands separators, a second
// separator ("1.2.3"), a separator of another locale (",5" where the
// separator is "."), "inf", "nan" and overflowing values ("1e999") are not
// numeric. Values too small for a double read as 0.
std::optional<double> ParseRegionalNumber(std::string_view text, std::string_view sep);

// The digit characters of `value`, in order; "0" when it has none.
std::string KeepDigits(std::string_view value);

// A value text as the readers turn it into a number: its value when numeric,
// otherwise the value of its digits (saturated at the largest 32-bit float).
// "12;" gives 12, "1.5;" gives 15, "abc" gives 0.
float ProfileNumber(std::string_view text, std::string_view sep);

} // namespace vantrel
