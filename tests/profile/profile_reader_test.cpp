#include "base/text.h"
#include "profile/profile.h"
#include "profile/profile_check.h"
#include "profile/profile_numbers.h"
#include "support/profile_support.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>

namespace vantrel {
namespace {

using test::Crlf;
using test::WriteBytes;

class Reader : public ::testing::Test {
  protected:
    void Units(const std::vector<test::UnitSpec>& units) { test::FillCatalogue(rig.defs, units); }
    std::string Write(const std::string& name, const std::string& lfText) {
        std::string path = dir / name;
        WriteBytes(path, Crlf(lfText));
        return path;
    }
    vtUnit& U(int i) { return rig.defs.Units[i]; }
    vtUnit& S(int i) { return rig.defs.SavedUnits[i]; }

    test::ScratchDir dir;
    test::ProfileRig rig;
};

// Values above the maxima are kept as read (the searches below keep every
// value) and counted, in both modes.
TEST_F(Reader, ValuesAboveTheMaximaAreCounted) {
    Units({{"A", "KBOT"}, {"B", "KBOT"}, {"C", "KBOT"}});
    std::string path = Write("c.txt", "Weight A 12\nWeight B 10\nWeight C -3\n"
                                      "plan hard\nLimit A 60\nLimit B 50\nLimit C -1.5\n");
    for (bool merge : {false, true}) {
        ReadAI(rig.ctx, path, merge);
        EXPECT_EQ(ValuesAboveMaxima(rig.defs, merge ? rig.defs.SavedUnits : rig.defs.Units), 2);
    }
    EXPECT_EQ(AboveMaximaText(2), "2 values are above the maxima of the Options (kept as read).");
    EXPECT_EQ(AboveMaximaText(0), "");
}

// A line ends at CR LF, LF or a lone CR: the same profile with each kind of
// line end (and a mix) gives its header fields and is checked alike (the
// look-ups are compared with the searches below).
TEST_F(Reader, EveryLineEndReadsAlike) {
    Units({{"ARMCOM", "COMMANDER"}, {"ARMCK", "CNSTR"}, {"CORAK", "KBOT"}});
    const std::string lf = "Auth: Ann\nName: Lines AI\nWeight ARMCOM 2.5\nWeight ARMCK 12\n"
                           "Weight CORAK x\nplan hard\nLimit ARMCOM 7\nLimit ARMCK 60\n";
    std::string mixed = Crlf(lf);
    mixed.replace(mixed.find("\r\nWeight ARMCK"), 2, "\r");
    mixed.replace(mixed.find("\r\nplan"), 2, "\n");
    struct Variant {
        const char* lineEnd; // of the Tessaly file
        std::string text;
    };
    const Variant variants[] = {
        {"\r\n", Crlf(lf)}, {"\n", lf}, {"\r", ReplaceAll(lf, "\n", "\r")}, {"\r\n", mixed}};
    auto check = [&](const std::string& text, bool tessaly) {
        std::vector<std::string> lines;
        for (const CheckFinding& f :
             CheckProfile(rig.defs, ProfileText{"v", text, std::nullopt}, tessaly, "."))
            lines.push_back(CheckLine(f));
        return lines;
    };
    const std::vector<std::string> findings{"not-a-number\t5\tWeight CORAK x"};
    const std::string tessaly = "Auth: Ann\nName: Lines AI\n[ARMCOM;]\nWeight=2.5\nLimit=x7\n";
    for (const Variant& variant : variants) {
        SCOPED_TRACE(Escape(variant.text));
        ReadAI(rig.ctx, ProfileText{"v.txt", variant.text, std::nullopt}, false);
        EXPECT_EQ(U(2).Limit, 60.0f);
        EXPECT_EQ(rig.fields.Author(), "Ann");
        EXPECT_EQ(rig.fields.AIName(), "Lines");
        ReadAI(rig.ctx, ProfileText{"v.txt", variant.text, std::nullopt}, true);
        EXPECT_EQ(rig.defs.Profile.LoadedAIName, "Lines AI");
        EXPECT_EQ(check(variant.text, false), findings);

        const std::string tsy = ReplaceAll(tessaly, "\n", variant.lineEnd);
        ReadTessalyAI(rig.ctx, ProfileText{"v.tsy", tsy, std::nullopt}, false);
        EXPECT_EQ(rig.defs.Units[1].Limit, 7.0f);
        EXPECT_EQ(rig.fields.Author(), "Ann");
        EXPECT_EQ(rig.defs.Profile.LoadedAIName, "Lines AI");
        EXPECT_EQ(check(tsy, true), (std::vector<std::string>{"missing\tARMCK", "missing\tCORAK",
                                                              "not-a-number\t5\tLimit=x7"}));
    }
}

TEST_F(Reader, HeaderFieldsAndNames) {
    Units({});
    // "//" ends the field; opening keeps the first line, merging joins lines.
    std::string path = Write("h.txt", "Auth:  Ann \nNext // rest\nName: MAIN AI\n");
    ReadAI(rig.ctx, path, true);
    EXPECT_EQ(rig.defs.Profile.LoadedAIName, "MAIN AI");
    EXPECT_EQ(rig.fields.Author(), "N/A"); // merging leaves the fields alone
    ReadTessalyAI(rig.ctx, path, false);
    EXPECT_EQ(rig.fields.Author(), "Ann Next");
    ReadAI(rig.ctx, path, false);
    EXPECT_EQ(rig.fields.Author(), "Ann");
    EXPECT_EQ(rig.fields.AIName(), "MN");
    EXPECT_EQ(rig.fields.Banner(), "MN AI");
    ReadAI(rig.ctx, ProfileText{"x.txt", "auth: x\r\nAuth:", std::nullopt}, false);
    EXPECT_EQ(rig.fields.Author(), "N/A"); // the key matches in its own case only
    ReadAI(rig.ctx, ProfileText{"x.txt", "Name:a//b", std::nullopt}, false);
    EXPECT_EQ(rig.defs.Profile.LoadedAIName, "a");

    // No "Name:" and an empty author: the file-name default and "N/A".
    ReadAI(rig.ctx, Write("Rusher.txt", "Auth:   \nWeight X 1\n"), false);
    EXPECT_EQ(rig.defs.Profile.LoadedAIName, "Rusher");
    EXPECT_EQ(rig.fields.Banner(), "Rusher AI");
    EXPECT_EQ(rig.fields.Author(), "N/A");
    ReadAI(rig.ctx, Write("ab", ""), true);
    EXPECT_EQ(rig.defs.Profile.LoadedAIName, "");
    ReadAI(rig.ctx, ProfileText{"C:\\Profiles\\Rusher.txt", "", std::nullopt}, true);
    EXPECT_EQ(rig.defs.Profile.LoadedAIName, "Rusher");
}

TEST_F(Reader, MergeFillsSavedUnitsOnly) {
    Units({{"ARMCOM", "COMMANDER", true, 1, 2}, {"ARMCK", "CNSTR", false, 3, 4}});
    WriteBytes(dir / "m.set", Crlf("[ARMCOM]\nSet=Don't Build;\n"));
    ReadAI(rig.ctx, Write("m.txt", "Name: Other AI\nWeight ARMCOM 5\nplan hard\nLimit ARMCK 7\n"),
           true);
    EXPECT_EQ(rig.defs.SavedUnits.UBound(), 2);
    EXPECT_EQ(S(1).Weight, 5.0f);
    EXPECT_EQ(S(1).Limit, 0.0f);
    EXPECT_EQ(S(2).Limit, 7.0f);
    EXPECT_EQ(S(2).TEDClass, "CNSTR");
    EXPECT_FALSE(S(2).Include);
    EXPECT_TRUE(U(1).Include); // the build set is not read when merging
    EXPECT_EQ(U(1).Weight, 1.0f);
    EXPECT_EQ(rig.defs.Profile.LoadedAIName, "Other AI");
    EXPECT_EQ(rig.fields.AIName(), "New");
}

TEST_F(Reader, ProgressAndStatus) {
    std::vector<test::UnitSpec> ten(10, {"X", "KBOT"});
    Units(ten);
    ReadAI(rig.ctx, Write("p.txt", ""), false);
    EXPECT_EQ(rig.progress.Status(), "Processing... 'p.txt'");
    EXPECT_EQ(rig.progress.Maximum(), 10);
    EXPECT_EQ(rig.progress.values, (std::vector<int>{0, 2, 5, 9, 10}));
}

TEST_F(Reader, TessalyFiles) {
    Units({{"ARMCOM", "COMMANDER", false}, {"ARMCK", "CNSTR"}, {"CORAK", "KBOT"}});
    std::string path = Write("t.tsy", "// Name: Tess AI //\n"
                                      "[armcom;]\nweight=2.5\nLIMIT=7\n"
                                      "[ARMCK]\nWeight=3\nLimit=3\n"
                                      "[CORAK;]\nWeight=x1y\nLimit=99\n");
    ReadTessalyAI(rig.ctx, path, false);
    EXPECT_EQ(U(1).Weight, 2.5f);
    EXPECT_EQ(U(1).Limit, 7.0f);
    EXPECT_EQ(U(2).Weight, 0.0f); // "[ARMCK]" lacks the ";"
    EXPECT_EQ(U(2).Limit, 0.0f);
    EXPECT_EQ(U(3).Weight, 1.0f); // not a number: its digits
    EXPECT_EQ(U(3).Limit, 99.0f);
    EXPECT_FALSE(U(1).Include); // no t.set: flags stay
    EXPECT_EQ(rig.fields.AIName(), "Tess");

    WriteBytes(dir / "t.set", Crlf("[ARMCOM]\nSet=Build;\n[ARMCK]\nSet=don't build;\n"
                                   "[CORAK]\nSet=Don't Build\n"));
    ReadTessalyAI(rig.ctx, path, false);
    EXPECT_TRUE(U(1).Include);
    EXPECT_FALSE(U(2).Include);
    EXPECT_TRUE(U(3).Include); // without ";" the unit is included
    ReadTessalyAI(rig.ctx, path, true);
    EXPECT_EQ(S(1).Weight, 2.5f);
    EXPECT_EQ(rig.defs.Profile.LoadedAIName, "Tess AI");
}

TEST_F(Reader, BuildSetPathsAndSharedSections) {
    EXPECT_EQ(BuildSetPath("C:\\AI\\Rusher.txt"), "C:\\AI\\Rusher.set");
    EXPECT_EQ(BuildSetPath("/ai/MyAI"), "/ai/.set");
    EXPECT_EQ(BuildSetPath("/ai/AB"), "/a.set");
    EXPECT_EQ(BuildSetPath("AB"), ".set");
    Units({{"ARMCOM", "COMMANDER"}, {"ARMCOM", "COMMANDER"}, {"CORAK", "KBOT", false}});
    WriteBytes(dir / ".set", Crlf("[ARMCOM]\nSet=DON'T BUILD;\n[ARMCOM]\nSet=Build;\n"));
    ReadAI(rig.ctx, Write("MyAI", ""), false);
    EXPECT_FALSE(U(1).Include);
    EXPECT_FALSE(U(2).Include);
    EXPECT_TRUE(U(3).Include); // no section: included
}

TEST_F(Reader, UnreadableFileChangesNothing) {
    Units({{"ARMCOM", "COMMANDER", false, 3, 4}});
    WriteBytes(dir / "gone.set", Crlf("[ARMCOM]\nSet=Build;\n"));
    try {
        ReadAI(rig.ctx, dir / "gone.txt", false);
        FAIL() << "no error";
    } catch (const ProfileError& e) {
        EXPECT_EQ(std::string(e.what()),
                  "Cannot read '" + (dir / "gone.txt") + "': No such file or directory.");
    }
    EXPECT_THROW(ReadTessalyAI(rig.ctx, dir.path(), true), ProfileError);
    EXPECT_FALSE(U(1).Include);
    EXPECT_EQ(U(1).Weight, 3.0f);
}

// A profile held in memory reads as its file would, build set included.
TEST_F(Reader, ProfileTextsInMemory) {
    Units({{"ARMCOM", "COMMANDER"}, {"ARMCK", "CNSTR"}});
    const std::string set = Crlf("[ARMCOM]\nSet=Don't Build;\n");
    ReadAI(rig.ctx,
           ProfileText{"ai/Arch.txt", Crlf("Weight ARMCK 3\nplan hard\nLimit ARMCK 4\n"), set},
           false);
    EXPECT_FALSE(U(1).Include);
    EXPECT_EQ(U(2).Limit, 4.0f);
    EXPECT_EQ(rig.defs.Profile.LoadedAIName, "Arch");
    EXPECT_EQ(rig.progress.Status(), "Processing... 'Arch.txt'");
}

// The look-up rules as the format states them: one search of the
// upper-cased text per unit.
float SearchedValue(const std::string& upper, std::size_t pos, std::size_t keyLength) {
    if (pos == std::string::npos) return 0.0f;
    std::size_t end = std::min(upper.find_first_of("\r\n", pos), upper.size());
    std::string value =
        end - pos > keyLength ? upper.substr(pos + keyLength, end - pos - keyLength) : "";
    return ProfileNumber(TrimSpaces(value), DecimalSeparator());
}
float SearchedWeight(const std::string& name, const std::string& upper) {
    std::string key = "WEIGHT " + UCase(name);
    return SearchedValue(upper, upper.find(key), key.size());
}
float SearchedLimit(const std::string& name, const std::string& upper) {
    std::size_t hard = upper.find("PLAN HARD");
    std::string key = "LIMIT " + UCase(name);
    std::size_t pos = upper.find(key, hard == std::string::npos ? 0 : hard);
    if (pos == std::string::npos) pos = upper.find("LIMIT " + name); // exactly, from the start
    return SearchedValue(upper, pos, key.size());
}

// Merges `text` for a catalogue of `names` and compares every unit's values,
// bit for bit, with the searches above.
void ExpectSameAsSearch(test::ProfileRig& rig, const std::string& text,
                        const std::vector<std::string>& names) {
    std::vector<test::UnitSpec> units;
    for (const std::string& name : names)
        units.push_back({name, "KBOT"});
    test::FillCatalogue(rig.defs, units);
    ReadAI(rig.ctx, ProfileText{"g.txt", text, std::nullopt}, true);
    const std::string upper = UCase(text);
    for (std::size_t i = 0; i < names.size(); ++i) {
        const float w = SearchedWeight(names[i], upper);
        const float l = SearchedLimit(names[i], upper);
        const vtUnit& got = rig.defs.SavedUnits[static_cast<int>(i + 1)];
        ASSERT_EQ(std::memcmp(&w, &got.Weight, sizeof w), 0)
            << "weight of '" << names[i] << "' in\n"
            << text;
        ASSERT_EQ(std::memcmp(&l, &got.Limit, sizeof l), 0) << "limit of '" << names[i] << "' in\n"
                                                            << text;
    }
}

// Fixed texts, then random profile-like texts built from pieces that collide
// on purpose: names that are prefixes of each other, mixed case, keys split
// across lines, "plan hard" in odd places, values that are not numbers.
TEST_F(Reader, LookUpsAgreeWithTheSearches) {
    const std::string fixed = "Weight Armcomx 4\r\nWeight Armcom 2\r\n"
                              "plan easy\r\nLimit Armcom 1\r\nLimit Armllt 7\r\n"
                              "Plan Hard\r\nLimit Armcomx 3\r\nLimit Armcom 2\r\n";
    ExpectSameAsSearch(rig, fixed, {"ARMCOM", "ARMCOMX", "armcom", "ARMLLT", "Armllt", "NONE"});
    EXPECT_EQ(S(1).Weight, 4.0f); // value text "X 4": its digits
    EXPECT_EQ(S(3).Limit, 3.0f);  // the search from the hard plan on ignores case
    EXPECT_EQ(S(4).Limit, 7.0f);  // only before the hard plan: found from the start ...
    EXPECT_EQ(S(5).Limit, 0.0f);  // ... but never for a name with lower-case letters
    // Value texts that differ only in spaces, a NUL or a separator.
    std::string values = "Plan Hard\r\n";
    std::vector<std::string> names;
    for (std::string v : {"1.5", " 1.5", "1.5 ", "12345678.25", "1234567.125", "7;", "-0", "",
                          "1.2.3", ",5", "1e999", "X 3"}) {
        names.push_back("U" + std::to_string(names.size()));
        values += "Weight " + names.back() + " " + v + "\r\nLimit " + names.back() + " " + v +
                  std::string("\0\r\n", 3);
    }
    ExpectSameAsSearch(rig, values, names);

    static const char* textPieces[] = {"WEIGHT ",
                                       "Weight ",
                                       "LIMIT ",
                                       "limit ",
                                       "PLAN HARD",
                                       "plan hard",
                                       "Plan Hard\r\n",
                                       "A",
                                       "B",
                                       "a",
                                       "AB",
                                       " ",
                                       "  ",
                                       "\r\n",
                                       "\n",
                                       "\r",
                                       "1",
                                       "2.5",
                                       "X 3",
                                       ";",
                                       "-4",
                                       "1.2.3",
                                       ",5",
                                       "1e999",
                                       "Name: ",
                                       "LONGUNITNAMEOVER16",
                                       "longunitnameover16"};
    static const char* namePieces[] = {
        "A", "B", "a", "AB", " ", "\r\n", "1", "_", "LONGUNITNAMEOVER16"};
    std::mt19937 rng(20261119);
    for (int file = 0; file < 400; ++file) {
        std::string text;
        for (int k = static_cast<int>(rng() % 300); k > 0; --k) {
            std::size_t piece = rng() % (std::size(textPieces) + 1);
            text += piece == std::size(textPieces) ? std::string(1, '\0') : textPieces[piece];
        }
        names.assign(rng() % 30, "");
        for (std::string& name : names)
            for (int k = static_cast<int>(rng() % 5); k > 0; --k)
                name += namePieces[rng() % std::size(namePieces)];
        ExpectSameAsSearch(rig, text, names);
    }
}

} // namespace
} // namespace vantrel
