// The six schemes against a table that another program computed, and the scale.
#include "maps/colourschemes.h"

#include "shell/startup.h"
#include "tests/golden.h"

#include <cstdio>
#include <sstream>

namespace orv {
namespace {

struct colourtest : sessiontest {
    colourtest() { startup(); }

    static std::string hex(std::int32_t colour) {
        std::array<char, 8> text{};
        std::snprintf(text.data(), text.size(), "%02X%02X%02X", static_cast<unsigned>(colour & 255),
                      static_cast<unsigned>(colour >> 8 & 255), static_cast<unsigned>(colour >> 16 & 255));
        return text.data();
    }
    static std::string shown(int scheme, double c) {
        SessionState.colourSchemeIndex = static_cast<float>(scheme);
        return hex(schemecolour(c));
    }
};

TEST_F(colourtest, EveryColourOfEveryScheme) {
    std::istringstream table(readtext(TEST_FILES "/golden/colours.txt"));
    for (int c = 0; c <= 255; ++c)
        for (int scheme = 1; scheme <= 6; ++scheme) {
            std::string expected;
            ASSERT_TRUE(table >> expected);
            EXPECT_EQ(shown(scheme, c), expected) << "scheme " << scheme << ", c = " << c;
        }
}

TEST_F(colourtest, RealIndexesRoundToEven) {
    EXPECT_EQ(shown(1, 0.5), "0000FE");    // 0.5 and 254.5
    EXPECT_EQ(shown(1, 1.5), "0200FE");    // 1.5 and 253.5... both to even
    EXPECT_EQ(shown(4, 127.5), "808080");  // the scale keeps the middle grey
    EXPECT_EQ(shown(5, 15.999), "000000"); // below the first edge
    EXPECT_EQ(shown(5, 256), "FFFF00");    // the seventeenth entry
    EXPECT_EQ(shown(6, 254.99), "FF0000"); // 200 / 255 of .01 is cut to 0
}

TEST_F(colourtest, Scale) {
    recordsurface page(1000, 500);
    page.surface.setWindow(0, 100, 1000, 0); // y grows upwards, as in the views
    SessionState.minLevel = 80;
    SessionState.maxLevel = 90;
    SessionState.colourSchemeIndex = 1;
    drawcolourscale(page.surface); // from 5 % to 70 % of the height, labels half a line above their edges
    expectgolden("colourscale.txt", page.lines);
}

} // namespace
} // namespace orv
