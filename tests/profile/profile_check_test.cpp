#include "profile/profile_check.h"
#include "support/profile_support.h"

#include <gtest/gtest.h>

namespace vantrel {
namespace {

std::vector<std::string> Lines(const Definitions& defs, const ProfileText& profile, bool tessaly) {
    std::vector<std::string> lines;
    for (const CheckFinding& f : CheckProfile(defs, profile, tessaly, "."))
        lines.push_back(CheckLine(f));
    return lines;
}

// Each shadow the check names is what the reader really does: the unit gets
// the value of the longer name's entry. Weights are searched in upper case;
// limits from the hard plan in any case, else from the start in the case written.
TEST(ProfileCheck, ShadowsAreTheEntriesTheReaderTakes) {
    test::ProfileRig rig;
    test::FillCatalogue(rig.defs, {{"ARMCOM", "COMMANDER"}, {"ARMCK", "CNSTR"}, {"CORAK", "KBOT"}});
    const std::string text = test::Crlf("Weight armcomx 3\n"
                                        "Weight ARMCOM 5\n"
                                        "Weight ARMCK 2;\n"
                                        "Weight zzTop 1\n"
                                        "Limit Coraks 6\n"
                                        "plan hard\n"
                                        "Limit ARMCOM 4\n"
                                        "Limit Armckz 7\n");
    EXPECT_EQ(Lines(rig.defs, {"p.txt", text, std::nullopt}, false),
              (std::vector<std::string>{"unknown\tzzTop", "shadowed\tarmcomx\tARMCOM",
                                        "shadowed\tCoraks\tCORAK", "shadowed\tArmckz\tARMCK",
                                        "missing\tCORAK", "not-a-number\t3\tWeight ARMCK 2;"}));
    // The same findings in words, for players, names escaped.
    std::vector<std::string> sentences;
    for (const CheckFinding& f : CheckProfile(rig.defs,
                                              {"p.txt",
                                               text + "Weight A\x01"
                                                      "B x\r\n",
                                               std::nullopt},
                                              false, "."))
        sentences.push_back(std::to_string(f.line) + " " + CheckSentence(f));
    EXPECT_EQ(sentences,
              (std::vector<std::string>{
                  "4 zzTop names no unit: ignored", "9 A\\x01B names no unit: ignored",
                  "1 WEIGHT armcomx is read as ARMCOM's", "5 LIMIT Coraks is read as CORAK's",
                  "8 LIMIT Armckz is read as ARMCK's", "0 CORAK has no WEIGHT entry: weight 0",
                  "3 '2;' is not a number: read as 2", "9 'x' is not a number: read as 0"}));
    ReadAI(rig.ctx, ProfileText{"p.txt", text, std::nullopt}, false);
    EXPECT_EQ(rig.defs.Units[1].Weight, 3.0f); // armcomx, not ARMCOM's own 5
    EXPECT_EQ(rig.defs.Units[2].Limit, 7.0f);  // Armckz in the hard plan
    // The hard plan has no CORAK; the search from the start compares the
    // name with the upper-cased text and finds Coraks.
    EXPECT_EQ(rig.defs.Units[3].Limit, 6.0f);

    // A clean profile has nothing to say; a build set keeps excluded units
    // from counting as missing.
    const std::string clean = "Weight ARMCOM 1\r\nWeight ARMCK 1\r\n";
    EXPECT_EQ(Lines(rig.defs, {"c.txt", clean, "[CORAK]\r\nSet=Don't Build;\r\n"}, false),
              std::vector<std::string>{});
    EXPECT_EQ(Lines(rig.defs, {"c.txt", clean, std::nullopt}, false),
              std::vector<std::string>{"missing\tCORAK"});
    // Without units every name is unknown.
    EXPECT_EQ(Lines(Definitions{}, {"c.txt", clean, std::nullopt}, false),
              (std::vector<std::string>{"unknown\tARMCOM", "unknown\tARMCK"}));
}

TEST(ProfileCheck, TessalySectionsAreReadOnlyWithTheirSemicolon) {
    Definitions defs;
    test::FillCatalogue(defs, {{"ARMCOM", "COMMANDER"}, {"ARMCK", "CNSTR"}});
    const std::string text = "[armcom;]\nWeight=1\nLimit=x2\n[ARMCK]\nWeight=2\n[NOPE;]\n";
    EXPECT_EQ(Lines(defs, {"t.tsy", text, std::nullopt}, true),
              (std::vector<std::string>{"unknown\tARMCK", "unknown\tNOPE", "missing\tARMCK",
                                        "not-a-number\t3\tLimit=x2"}));
}

} // namespace
} // namespace vantrel
