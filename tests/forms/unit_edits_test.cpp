#include "forms/unit_edits.h"

#include "support/unit_fixtures.h"

#include <gtest/gtest.h>

using namespace vantrel;

namespace {

struct UnitEditsFixture : ::testing::Test {
    Definitions defs;
    void SetUp() override {
        test::AddUnit(defs, "ARM", "Arm Commander", "COMMANDER", 1.5f, 1);
        test::AddUnit(defs, "CORE", "Thud", "KBOT", 2, 6);
        test::AddUnit(defs, "core", "Goliath", "TANK", 3, 9, false);
        defs.Units[3].Description = "kbot killer"; // descriptions are not searched
    }
};

} // namespace

TEST_F(UnitEditsFixture, FilterLooksAtNameUnitNameSideAndClassWithoutCase) {
    const struct {
        const char* filter;
        std::vector<int> units;
    } cases[] = {
        {"", {1, 2, 3}},  {"*", {1, 2, 3}}, {"CORE", {2, 3}}, {"kBoT", {2}},
        {"u2", {2}},      {"mander", {1}},  {"killer", {}},   {"arm c", {1}},
    };
    for (const auto& c : cases)
        EXPECT_EQ(UnitsMatching(defs, c.filter), c.units) << c.filter;
}

TEST_F(UnitEditsFixture, TypedValuesKeepTheCardsBounds) {
    EXPECT_FLOAT_EQ(BoundedWeight(0.125, 10), 0.12f); // 12.5 hundredths: halves to even
    EXPECT_FLOAT_EQ(BoundedWeight(0.375, 10), 0.38f);
    EXPECT_FLOAT_EQ(BoundedWeight(12, 10), 10.0f);
    EXPECT_FLOAT_EQ(BoundedWeight(-1, 10), 0.0f);
    EXPECT_FLOAT_EQ(BoundedLimit(7.5, 50), 8.0f);
    EXPECT_FLOAT_EQ(BoundedLimit(6.5, 50), 6.0f);
    EXPECT_FLOAT_EQ(BoundedLimit(99, 50), 50.0f);
}

TEST_F(UnitEditsFixture, BulkSetReturnsOldValuesThatUndoWritesBack) {
    defs.Options.WeightMax = 5;
    UnitChanges changes = SetUnitValues(defs, {1, 2}, UnitField::Weight, 7);
    EXPECT_FLOAT_EQ(defs.Units[1].Weight, 5.0f);
    EXPECT_FLOAT_EQ(defs.Units[2].Weight, 5.0f);
    EXPECT_FLOAT_EQ(defs.Units[3].Weight, 3.0f);
    ASSERT_EQ(changes.size(), 2u);
    EXPECT_FLOAT_EQ(changes[0].Before.Weight, 1.5f);
    EXPECT_EQ(EditName(defs, UnitField::Weight, true, {1, 2}), "Set Build Priority of 2 units");
    EXPECT_EQ(EditName(defs, UnitField::Include, false, {2}), "Exclude Thud");

    ApplyChanges(defs, changes, true);
    EXPECT_FLOAT_EQ(defs.Units[1].Weight, 1.5f);
    EXPECT_FLOAT_EQ(defs.Units[2].Weight, 2.0f);

    // A snapshot finds what a command changed behind its back.
    auto before = SnapshotValues(defs);
    defs.Units[3].Include = true;
    changes = ChangesSince(defs, before);
    ASSERT_EQ(changes.size(), 1u);
    EXPECT_EQ(changes[0].Unit, 3);
    EXPECT_FALSE(changes[0].Before.Include);
}

TEST_F(UnitEditsFixture, CommandLineBulkSets) {
    auto set = ParseBulkSet("core:limit=60");
    ASSERT_TRUE(set);
    EXPECT_EQ(ApplyBulkSet(defs, *set), 2);
    EXPECT_FLOAT_EQ(defs.Units[2].Limit, 50.0f);
    EXPECT_FLOAT_EQ(defs.Units[1].Limit, 1.0f);

    set = ParseBulkSet("a:b:Weight=2.5"); // the last colon ends the filter
    ASSERT_TRUE(set);
    EXPECT_EQ(set->Filter, "a:b");
    EXPECT_EQ(set->Field, UnitField::Weight);
    for (const char* bad : {"core", "core:weight", "core:speed=3", "core:weight=x", "x:limit=-1"})
        EXPECT_FALSE(ParseBulkSet(bad)) << bad;
}
