#include "profile/profile_numbers.h"

#include <algorithm>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstring>
#include <random>
#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(ParseRegionalNumber, AcceptsStrictDecimalsWithTheLocaleSeparator) {
    struct Case {
        const char* text;
        const char* sep;
        double value;
    };
    for (const Case& c : {Case{"5", ".", 5}, Case{"-5", ".", -5}, Case{"+5", ".", 5},
                          Case{"1.25", ".", 1.25}, Case{"5.", ".", 5}, Case{".5", ".", 0.5},
                          Case{",5", ",", 0.5}, Case{"1,25", ",", 1.25}, Case{"1E5", ".", 1e5},
                          Case{"2.5E-1", ".", 0.25}, Case{"1e-999", ".", 0}, Case{"007", ".", 7},
                          Case{"1\xd9\xab"
                               "5",
                               "\xd9\xab", 1.5}}) {
        auto v = ParseRegionalNumber(c.text, c.sep);
        ASSERT_TRUE(v.has_value()) << c.text;
        EXPECT_DOUBLE_EQ(*v, c.value) << c.text;
    }
}

// Short plain decimals take a quicker path; it must round exactly as
// from_chars does, in either separator.
TEST(ParseRegionalNumber, PlainDecimalsRoundLikeFromChars) {
    std::mt19937 rng(3);
    for (int n = 0; n < 20000; ++n) {
        std::string digits;
        std::size_t count = 1 + rng() % 17;
        for (std::size_t k = 0; k < count; ++k)
            digits += static_cast<char>('0' + rng() % 10);
        if (rng() % 4 != 0) digits.insert(rng() % (digits.size() + 1), ".");
        if (rng() % 3 == 0) digits.insert(0, "-");
        double expected = 0;
        auto res = std::from_chars(digits.data(), digits.data() + digits.size(), expected);
        if (res.ec != std::errc() || res.ptr != digits.data() + digits.size()) continue;
        auto dot = ParseRegionalNumber(digits, ".");
        std::string comma = digits;
        std::replace(comma.begin(), comma.end(), '.', ',');
        auto sep = ParseRegionalNumber(comma, ",");
        ASSERT_TRUE(dot && sep) << digits;
        ASSERT_EQ(std::memcmp(&*dot, &expected, sizeof expected), 0) << digits;
        ASSERT_EQ(std::memcmp(&*sep, &expected, sizeof expected), 0) << comma;
    }
}

// Weights are written without to_chars where they can be; the text must be
// the one to_chars gives (7 significant digits, ties to even), for every
// kind of float: random bit patterns, hundredths as the sliders make them,
// ties, and the neighbours of powers of ten.
TEST(WeightText, MatchesToCharsWithSevenDigits) {
    auto expected = [](float w, std::string_view sep) {
        char buf[64];
        auto res = std::to_chars(buf, buf + sizeof buf, w, std::chars_format::general, 7);
        std::string text(buf, res.ptr);
        if (text == "-0") return std::string("0");
        if (std::size_t dot = text.find('.'); dot != std::string::npos) text.replace(dot, 1, sep);
        return text;
    };
    std::vector<float> values;
    std::mt19937 rng(11);
    for (int n = 0; n < 300000; ++n) {
        std::uint32_t bits = rng();
        float f;
        std::memcpy(&f, &bits, sizeof f);
        if (std::isfinite(f)) values.push_back(f);
        values.push_back(static_cast<float>(rng() % 100000) / 100.0f);
        values.push_back(static_cast<float>(rng() % (1 << 24)) / static_cast<float>(1 << (rng() % 24)));
    }
    for (float p = 1e-6f; p < 1e8f; p *= 10)
        for (float f = p, k = 0; k < 64; ++k, f = std::nextafter(f, 0.0f))
            values.insert(values.end(), {f, -f, std::nextafter(p, 1e9f)});
    for (float w : values) {
        ASSERT_EQ(WeightText(w, "."), expected(w, ".")) << w;
        ASSERT_EQ(WeightText(w, "\xd9\xab"), expected(w, "\xd9\xab")) << w;
    }
}

TEST(ParseRegionalNumber, RejectsEverythingElse) {
    for (const char* text : {"",       "-",      "+",   ".",    "1.2.3", ",5",   "1,5", "1e999",
                             "-1e999", "3.5e39", "1e",  "1e+",  "12;",   "X 3",  " 5",  "5 ",
                             "1 000",  "inf",    "nan", "0x10", "&H10",  "1..2", "--5", "5-"})
        EXPECT_FALSE(ParseRegionalNumber(text, ".").has_value()) << text;
    EXPECT_FALSE(ParseRegionalNumber("1.5", ",").has_value());
}

TEST(ProfileNumber, NonNumericTextKeepsItsDigits) {
    EXPECT_EQ(KeepDigits("abc"), "0");
    EXPECT_EQ(KeepDigits("a1b2"), "12");
    EXPECT_EQ(ProfileNumber("12;", "."), 12.0f);
    EXPECT_EQ(ProfileNumber("1.5;", "."), 15.0f);
    EXPECT_EQ(ProfileNumber("abc", "."), 0.0f);
    EXPECT_EQ(ProfileNumber("X 3", "."), 3.0f);
    EXPECT_EQ(ProfileNumber("1.2.3", "."), 123.0f);
    EXPECT_EQ(ProfileNumber(",5", "."), 5.0f);
    EXPECT_EQ(ProfileNumber(",5", ","), 0.5f);
    EXPECT_EQ(ProfileNumber("-5", "."), -5.0f);
    EXPECT_EQ(ProfileNumber("1e999", "."), 1999.0f);
    EXPECT_EQ(ProfileNumber(std::string(400, '9'), "."), FLT_MAX);
    EXPECT_EQ(ProfileNumber("", "."), 0.0f);
}

} // namespace
} // namespace vantrel
