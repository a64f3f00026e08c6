// Numeric format patterns.
#include "base/formatpattern.h"

#include "base/files.h"
#include "base/numbertext.h"
#include "tests/jsonvalue.h"

#include <gtest/gtest.h>

using namespace orv;

namespace {

TEST(formatpattern, WritesSevenDigitsOfASingle) {
    // The point and digits only where places ask for them, and places behind a forced one are forced. A zero
    // shows nothing without a forced digit, a minus stands before digits only and the thousands mark between
    // them. The seven digits shown decide, halves away from zero.
    const struct {
        const char* pattern;
        double value;
        const char* text;
    } cases[] = {
        {"#####.#", 50.04, "50"},
        {"###.# s", 2, "2 s"},
        {"####.0", .04, ".0"},
        {"#0.0##", 1.5, "1.5"},
        {"#0.0##", 1.2346, "1.235"},
        {"##0.0", 123456, "123456.0"},
        {"##0.0#", 10, "10.0"},
        {"000", 7, "007"},
        {"0##", 7, "007"},
        {"#####.#", 0, ""},
        {"#####", -.4, ""},
        {"###.# s", 0, " s"},
        {"##0.0", -.04, "-0.0"},
        {"##0.0", -0.0, "0.0"},
        {" ###0.0", -12.34, " -12.3"},
        {"####.##", -.25, "-.25"},
        {"###,###,###", 1234567, "1,234,567"},
        {"###,###,###", 123, "123"},
        {"###,###,###", -1000, "-1,000"},
        {"###,##0.0", 1234.56, "1,234.6"},
        {"#0.0", .15, "0.2"},
        {"##0.00 s", 1.005, "1.01 s"},
        {"##0.00", 2.345, "2.35"},
        {"##0.0 dB", -3.25, "-3.3 dB"},
        {"##0", 2.5, "3"},
        {"0", -.5, "-1"},
        {"#0.0", 9.96, "10.0"},
        {"##0.0####", .99999996, "1.0"},
        {"0", 16777216, "16777220"},
    };
    for (const auto& [pattern, value, text] : cases)
        EXPECT_EQ(formatnumber(static_cast<float>(value), pattern), text) << pattern << " of " << value;
}

TEST(formatpattern, WritesFifteenDigitsOfADouble) {
    EXPECT_EQ(formatnumber(.15, "#0.0"), "0.2"); // which lies a little below that
    EXPECT_EQ(formatnumber(1.005, "0.00"), "1.01");
    EXPECT_EQ(formatnumber(16777217.0, "0"), "16777217");
    EXPECT_EQ(formatnumber(std::int32_t{2000000000}, "###,###,###"), "2,000,000,000");
}

TEST(textvectors, AgreeWithThePatterns) {
    const std::string path = std::string(SHARED_FILES) + "/examples/text_vectors.json";
    if (!canopen(path)) GTEST_SKIP() << "no worked examples here";
    const filebytes bytes = readfile(path);
    const jsonvalue vectors = readjson(bytes);
    EXPECT_GT(vectors["format"].items.size(), 100U);
    for (const jsonvalue& one : vectors["format"].items)
        EXPECT_EQ(formatnumber(static_cast<float>(lenientnumber(one[1].text)), one[0].text), one[2].text)
            << one[0].text << " of " << one[1].text;
}

} // namespace
