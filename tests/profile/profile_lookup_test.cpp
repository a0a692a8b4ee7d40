// The indexed look-up must give exactly what one search per unit gives.
#include "catalogue/text.h"
#include "profile/profile_lookup.h"
#include "profile/unit_index.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <random>

namespace vantrel {
namespace {

TEST(EntryValueText, TakesTheRestOfTheLineTrimmed) {
    std::string_view t = "WEIGHT AB  1.5 \r\nX";
    EXPECT_EQ(EntryValueText(t, 0, 9, 15), "1.5");
    EXPECT_EQ(EntryValueText(t, 0, 9, 9), ""); // line ends where the key ends
    EXPECT_EQ(EntryValueText(t, 0, 9, 4), ""); // line ends inside the key
    EXPECT_EQ(EntryValueText(t, 0, 9, 18), "1.5 \r\nX");
}

TEST(GetWeightAndLimit, PrefixMatchesAndTheHardPlanStart) {
    std::string text = UCase("Weight Armcomx 4\r\nWeight Armcom 2\r\n"
                             "plan easy\r\nLimit Armcom 1\r\nLimit Armllt 7\r\n"
                             "Plan Hard\r\nLimit Armcomx 3\r\nLimit Armcom 2\r\n");
    EXPECT_EQ(GetWeight("ARMCOM", text, "."), 4.0f); // value text "X 4": its digits
    EXPECT_EQ(GetWeight("ARMCOMX", text, "."), 4.0f);
    EXPECT_EQ(GetLimit("ARMCOM", text, "."), 3.0f); // "X 3"
    EXPECT_EQ(GetLimit("armcom", text, "."), 3.0f); // the first search ignores case
    // ARMLLT is only before the hard plan: found by the exact search from the start,
    // which a name in lower case never satisfies.
    EXPECT_EQ(GetLimit("ARMLLT", text, "."), 7.0f);
    EXPECT_EQ(GetLimit("Armllt", text, "."), 0.0f);
    EXPECT_EQ(GetLimit("NONE", text, "."), 0.0f);
}

// Random profile-like texts built from pieces that collide on purpose: names
// that are prefixes of each other, mixed case, keys split across lines,
// "plan hard" in odd places, values that are not numbers.
std::string RandomPiece(std::mt19937& rng, bool forName) {
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
    if (forName) return namePieces[rng() % std::size(namePieces)];
    std::size_t k = rng() % (std::size(textPieces) + 1);
    if (k == std::size(textPieces)) return std::string(1, '\0');
    return textPieces[k];
}

TEST(ProfileLookup, MatchesThePerUnitSearchOnGeneratedFiles) {
    std::mt19937 rng(20261119);
    for (int file = 0; file < 400; ++file) {
        std::string text;
        int pieces = static_cast<int>(rng() % 300);
        for (int k = 0; k < pieces; ++k)
            text += RandomPiece(rng, false);
        std::vector<std::string> names;
        int count = static_cast<int>(rng() % 30);
        for (int n = 0; n < count; ++n) {
            std::string name;
            int len = static_cast<int>(rng() % 5);
            for (int k = 0; k < len; ++k)
                name += RandomPiece(rng, true);
            names.push_back(name);
        }
        std::string upper = UCase(text);
        ProfileLookup lookup(text, names);
        for (std::size_t i = 0; i < names.size(); ++i) {
            float w = GetWeight(names[i], upper, ".");
            float l = GetLimit(names[i], upper, ".");
            // Bitwise equality: the same entry must be found, not just an equal value.
            float lw = lookup.Weight(i), ll = lookup.Limit(i);
            ASSERT_EQ(std::memcmp(&w, &lw, sizeof w), 0)
                << "file " << file << " weight of '" << names[i] << "' in\n"
                << text;
            ASSERT_EQ(std::memcmp(&l, &ll, sizeof l), 0)
                << "file " << file << " limit of '" << names[i] << "' in\n"
                << text;
        }
    }
}

// `listing`: the order the index expects the names in (theirs when empty).
void ExpectSameAsPerUnitSearch(const std::string& text, const std::vector<std::string>& names,
                               const std::vector<std::uint32_t>& listing = {}) {
    std::string upper = UCase(text);
    UnitIndex index(names, listing);
    ProfileLookup lookup(text, index);
    for (std::size_t i = 0; i < names.size(); ++i) {
        float w = GetWeight(names[i], upper, "."), lw = lookup.Weight(i);
        float l = GetLimit(names[i], upper, "."), ll = lookup.Limit(i);
        ASSERT_EQ(std::memcmp(&w, &lw, sizeof w), 0) << "weight of '" << names[i] << "' in\n"
                                                     << text;
        ASSERT_EQ(std::memcmp(&l, &ll, sizeof l), 0) << "limit of '" << names[i] << "' in\n"
                                                     << text;
    }
}

TEST(ProfileLookup, LongTextsWithManyUnits) {
    std::mt19937 rng(7);
    std::vector<std::string> names;
    std::string text = "Auth: x\r\nName: y\r\n";
    for (int i = 0; i < 2000; ++i) {
        std::string name = "UNIT" + std::to_string(rng() % 500);
        if (rng() % 3 == 0) name = LCase(name);
        names.push_back(name);
        text += "Weight " + name + " " + std::to_string(rng() % 100) + "\r\n";
        if (i == 1000) text += "Plan Hard\r\n";
        text += "Limit " + name + std::to_string(rng() % 3) + " " + std::to_string(i) + "\r\n";
    }
    ExpectSameAsPerUnitSearch(text, names);
}

// Values are read once per distinct text: texts that share their first
// bytes, or differ only in spaces or a NUL, must each keep their own value.
TEST(ProfileLookup, ValuesThatLookAlike) {
    std::vector<std::string> values = {
        "1.5",        " 1.5",      "1.5 ",        "12345678.5",  "12345678.25", "12345678.2",
        "1234567812", "123456781", "1234567.125", "1234567.375", "7;",          "7",
        "-0",         ""};
    values.push_back(std::string("1.5\0", 4));
    // Besides those, a thousand texts of one length that differ only in
    // their last digits, so that some share a place in the memory.
    std::mt19937 rng(11);
    auto value = [&] {
        if (rng() % 2) return values[rng() % values.size()];
        return "1234567." + std::to_string(100 + rng() % 900);
    };
    std::vector<std::string> names;
    std::string text = "Name: y\r\nPlan Hard\r\n";
    for (int i = 0; i < 4000; ++i) {
        names.push_back("U" + std::to_string(i));
        text += "Weight U" + std::to_string(i) + " " + value() + "\r\n";
        text += "Limit U" + std::to_string(i) + " " + value() + "\r\n";
    }
    ExpectSameAsPerUnitSearch(text, names);
}

// Saved profiles list the same names in the same order in every plan (the
// order the index expects), and the look-up leans on that; lists that mostly repeat but not quite
// (names left out, swapped, repeated, lengthened, in another case, cut off by the end of the text)
// must still give the per-unit answers.
TEST(ProfileLookup, PlansThatAlmostRepeatTheWeightList) {
    std::mt19937 rng(20261123);
    for (int file = 0; file < 200; ++file) {
        std::vector<std::string> names;
        const int count = 1 + static_cast<int>(rng() % 40);
        for (int n = 0; n < count; ++n) {
            std::string name = rng() % 4 == 0 && !names.empty()
                                   ? names[rng() % names.size()]
                                   : std::string(rng() % 2 ? "ARM" : "COR");
            name += std::to_string(rng() % 30);
            if (rng() % 8 == 0) name += "LONGERTHANSIXTEENBYTES";
            if (rng() % 6 == 0) name = LCase(name);
            names.push_back(name);
        }
        std::vector<std::uint32_t> listing(names.size());
        for (std::size_t k = 0; k < listing.size(); ++k)
            listing[k] = static_cast<std::uint32_t>(k);
        std::shuffle(listing.begin(), listing.end(), rng);
        std::vector<std::string> order;
        for (std::uint32_t k : listing)
            order.push_back(names[k]);
        auto list = [&](const char* key, bool perturb) {
            std::string out;
            for (std::size_t k = 0; k < order.size(); ++k) {
                std::string name = order[k];
                if (perturb) {
                    switch (rng() % 12) {
                    case 0:
                        continue; // left out
                    case 1:
                        if (k + 1 < order.size()) name = order[k + 1];
                        break; // swapped
                    case 2:
                        name += "X";
                        break; // lengthened
                    case 3:
                        name = LCase(name);
                        break;
                    case 4:
                        name = UCase(name);
                        break;
                    case 5:
                        out += std::string(key) + name + " 1\r\n";
                        break; // repeated
                    default:
                        break;
                    }
                }
                out += std::string(key) + name + " " + std::to_string(rng() % 100) + "\r\n";
            }
            return out;
        };
        std::string text = "Name: t\r\n" + list("Weight ", false);
        for (const char* plan : {"plan easy\r\n", "plan medium\r\n", "plan hard\r\n"})
            text += plan + list("Limit ", true);
        // Sometimes the text ends inside the last name.
        if (rng() % 3 == 0) text.resize(text.size() - 3 - rng() % 4);
        // Expecting the names in catalogue order, or in the order listed.
        ExpectSameAsPerUnitSearch(text, names);
        ExpectSameAsPerUnitSearch(text, names, listing);
    }
}

} // namespace
} // namespace vantrel
