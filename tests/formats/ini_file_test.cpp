#include "formats/ini_file.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

TEST(IniIndex, SectionsKeysAndValuesAsTheIniServiceReadsThem) {
    IniIndex ini("key=before any section\r\n"
                 "[ARMCOM;]\r\n"
                 "  Weight  =   2.5   \r\n"
                 "weight=9\r\n"
                 "stray line\r\n"
                 "Limit\r\n"
                 "[ spaced ]\r\n"
                 "K=1\r\n"
                 "[open]\r\n"
                 "Quoted=\"a b\"\r\n"
                 "Single='x'\r\n"
                 "Half=\"x'\r\n"
                 "[no bracket\r\n"
                 "Inside=1\r\n"
                 "[a]b]\r\n"
                 "K=v=w\r\n"
                 "[armcom;]\r\n"
                 "Weight=7\r\n"
                 "Extra=1\n"
                 "[LAST]\n"
                 "End=\tlast");
    EXPECT_EQ(ini.Get("ARMCOM;", "WEIGHT", "0"), "2.5");       // first key, trimmed
    EXPECT_EQ(ini.Get("  armcom;\t", " weight ", "0"), "2.5"); // names trimmed, any case
    EXPECT_EQ(ini.Get("ARMCOM;", "Extra", "0"), "0");          // later duplicate section ignored
    EXPECT_EQ(ini.Get("ARMCOM;", "Limit", "0"), "");           // key without value
    EXPECT_EQ(ini.Get("ARMCOM;", "stray line", "0"), "");
    EXPECT_EQ(ini.Get("ARMCOM", "Weight", "0"), "0"); // ";" is part of the name
    EXPECT_EQ(ini.Get("", "key", "0"), "0");          // lines before sections
    EXPECT_EQ(ini.Get(" spaced ", "K", "0"), "0"); // the name keeps its blanks, the asked one not
    EXPECT_EQ(ini.Get("open", "Quoted", "0"), "a b");
    EXPECT_EQ(ini.Get("open", "Single", "0"), "x");
    EXPECT_EQ(ini.Get("open", "Half", "0"), "\"x'");
    EXPECT_EQ(ini.Get("open", "Inside", "0"), "1"); // "[no bracket" is a key line
    EXPECT_EQ(ini.Get("a]b", "K", "0"), "v=w");     // last "]", first "="
    EXPECT_EQ(ini.Get("last", "end", "0"), "last");
    EXPECT_EQ(ini.Get("missing", "end", "dflt"), "dflt");
}

TEST(IniIndex, LongValuesAndOddBytes) {
    IniIndex ini("[S]\nLong=" + std::string(300, 'v') + "\nNul=a" + std::string(1, '\0') + "b\n");
    EXPECT_EQ(ini.Get("S", "Long", "0"), std::string(254, 'v'));
    EXPECT_EQ(ini.Get("S", "Nul", "0"), std::string("a\0b", 3));
    EXPECT_EQ(IniIndex("").Get("S", "K", "0"), "0");
    EXPECT_EQ(IniIndex("[").Get("[", "K", "0"), "0");
    EXPECT_EQ(IniIndex("[]\nK=1").Get("", "K", "0"), "1");
}

} // namespace
} // namespace vantrel
