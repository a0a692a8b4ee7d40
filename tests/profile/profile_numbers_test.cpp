#include "profile/profile_numbers.h"

#include <cfloat>
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
