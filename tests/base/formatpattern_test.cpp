// Numeric format patterns.
#include "base/formatpattern.h"

#include "base/files.h"
#include "base/numbertext.h"
#include "tests/jsonvalue.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

struct patterncase {
    const char* pattern;
    double value;
    const char* text;
};

void expectall(std::initializer_list<patterncase> cases) {
    for (const patterncase& one : cases)
        EXPECT_EQ(formatnumber(static_cast<float>(one.value), one.pattern), one.text)
            << one.pattern << " of " << one.value;
}

TEST(formatpattern, WritesPointAndDigitsOnlyWherePlacesAskForThem) {
    expectall({
        {"#####.#", 50, "50"},
        {"#####.#", 50.04, "50"},
        {"###.# s", 2, "2 s"},
        {"#####.#", .25, ".3"},
        {"##0.0", 0, "0.0"},
        {"####.0", .04, ".0"},
        {"#0.0##", 1.5, "1.5"},
        {"#0.0##", 1.2346, "1.235"},
        {"###0.##", 3, "3"},
        {"##0.0", 123456, "123456.0"},
        {"##0", 2.5, "3"},
        {"##0.00 s", 1.005, "1.01 s"},
        {"##0.0 dB", -3.25, "-3.3 dB"},
        {"##0.0#", 10, "10.0"},
        {"000", 7, "007"},
        {"0##", 7, "007"}, // places behind a forced one are forced
        {" #######0.###", 12.5, " 12.5"},
    });
}

TEST(formatpattern, LeavesNothingOfAZeroWhereNoDigitIsForced) {
    expectall({{"#####.#", 0, ""},
               {"#####", .4, ""},
               {"#####", -.4, ""},
               {"###.# s", 0, " s"},
               {"###,###,###", 0, ""}});
}

TEST(formatpattern, KeepsTheMinusBehindLiteralsAndBeforeZerosThatShow) {
    expectall({{"##0.0", -.04, "-0.0"},
               {"##0.0", -0.0, "0.0"},
               {" ###0.0", -12.34, " -12.3"},
               {" ###0.0", 12.34, " 12.3"},
               {"####.##", -.25, "-.25"}});
}

TEST(formatpattern, SetsTheThousandsMarkBetweenDigits) {
    expectall({{"###,###,###", 1234567, "1,234,567"},
               {"###,###,###", 123, "123"},
               {"###,###,###", -1000, "-1,000"},
               {"###,##0.0", 1234.56, "1,234.6"}});
    EXPECT_EQ(formatnumber(std::int32_t{2000000000}, "###,###,###"), "2,000,000,000");
}

// The single .15 is .1500000060, the double one .1499999999999999944: both show their digits, which end in 5.
TEST(formatpattern, RoundsTheShownDigitsHalvesAwayFromZero) {
    EXPECT_EQ(formatnumber(.15F, "#0.0"), "0.2");
    EXPECT_EQ(formatnumber(.15, "#0.0"), "0.2");
    EXPECT_EQ(formatnumber(1.005, "0.00"), "1.01");
    EXPECT_EQ(formatnumber(2.345F, "##0.00"), "2.35");
    EXPECT_EQ(formatnumber(.99999996F, "##0.0####"), "1.0"); // seven digits make it one
    EXPECT_EQ(formatnumber(16777217.0, "0"), "16777217");    // a double shows fifteen
    EXPECT_EQ(formatnumber(16777216.0F, "0"), "16777220");   // a single seven
    EXPECT_EQ(formatnumber(9.96F, "#0.0"), "10.0");
    EXPECT_EQ(formatnumber(-.5F, "0"), "-1");
}

TEST(textvectors, AgreeWithThePatterns) {
    const std::string path = std::string(SHARED_FILES) + "/examples/text_vectors.json";
    if (!canopen(path)) GTEST_SKIP() << "no worked examples here";
    const filebytes bytes = readfile(path);
    const jsonvalue vectors = readjson(std::string(std::string_view(bytes)));
    EXPECT_GT(vectors["format"].items.size(), 100U);
    for (const jsonvalue& one : vectors["format"].items)
        EXPECT_EQ(formatnumber(static_cast<float>(lenientnumber(one[1].text)), one[0].text), one[2].text)
            << one[0].text << " of " << one[1].text;
}

} // namespace
