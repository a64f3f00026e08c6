// Mapping, window rules and what reaches the device of a drawing surface.
#include "scene/drawsurface.h"

#include "scene/recordsurface.h"
#include "tests/failures.h"

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace orv {
namespace {

constexpr double infinite = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

using lines = std::vector<std::string>;

TEST(drawsurface, windows) {
    recordsurface r(800, 400);
    DrawSurface& s = r.surface;
    s.setWindow(-4, 3, 4, -1);
    EXPECT_DOUBLE_EQ(s.textWidth("abc"), 0.24);
    EXPECT_EQ(s.elided("abcdefgh", 0.64), "abcdefgh");
    EXPECT_EQ(s.elided("abcdefgh", 0.63), "ab...gh");
    EXPECT_EQ(s.elided("abcdefgh", 0.64 - 1e-15), "abcdefgh"); // a room that is a rounding short
    EXPECT_DOUBLE_EQ(s.textHeight("abc"), -0.16);
    s.resize(1600, 800, 2); // a dense device has the same size in pixels, and the window stays
    EXPECT_DOUBLE_EQ(s.toPixelsY(1), -100);
    EXPECT_DOUBLE_EQ(s.toDeviceY(0), 600);
    s.resetWindow();
    s.resize(300, 0, 1); // not laid out: default coordinates follow, and nothing divides by 0
    EXPECT_EQ(s.windowWidth(), 300);
    EXPECT_EQ(s.height(), 1);

    s.setWindow(0, 1, 2, 0); // which impossible windows leave
    EXPECT_EQ(kindof([&] { s.setWindow(1, 0, 1, 5); }), errorkind::divisionbyzero);
    EXPECT_EQ(kindof([&] { s.setWindow(0, nan, 1, 5); }), errorkind::overflow);
    EXPECT_EQ(s.windowWidth(), 2);
}

TEST(drawsurface, operationsandtheirstate) {
    recordsurface r(100, 100);
    DrawSurface& s = r.surface;
    s.setForeColor(0x0000FF); // red
    s.clear();
    s.lineTo(10, 20); // from (0, 0), to which clear went back
    s.setFillColor(0x123456);
    s.box(30, 40, 10, 20);
    s.setFillStyle(fillstyle::solid);
    s.circle(50, 50, 5);
    s.setDrawWidth(3);
    s.setDrawStyle(drawstyle::dotted);
    s.setDrawMode(drawmodexor);
    s.line(1, 1, 2, 2);
    s.setTextPoint(10, 50);
    s.text("ab");
    s.textLine("c");
    s.text("d");
    const lines expected = {"clear FFFFFF",
                            "line 0 0 10 20 FF0000",
                            "box 10 20 30 40 FF0000",
                            "circle 50 50 5 FF0000 fill 563412",
                            "line 1 1 2 2 FF0000 width 3 dotted mode 7",
                            "text 10 50 FF0000 ab",
                            "text 26 50 FF0000 c",
                            "text 10 66 FF0000 d"};
    EXPECT_EQ(r.lines, expected);
}

struct segment {
    double x1, y1, x2, y2;
};
std::vector<segment> handed; // what the device of the tests below was handed

DrawSurface segmentsurface(double width, double height) {
    DrawSurface s;
    s.resize(width, height, 1);
    s.device.line = [](void*, const surfacepen&, double x1, double y1, double x2, double y2) {
        handed.push_back({x1, y1, x2, y2});
    };
    handed.clear();
    return s;
}

TEST(drawsurface, linesarecutwithoutbeingbent) {
    DrawSurface s = segmentsurface(1000, 600);
    std::mt19937 random(7);
    std::uniform_real_distribution<double> part(0, 1), power(0, 14);
    for (int i = 0; i < 20000; ++i) {
        const double x = 1000 * part(random), y = 600 * part(random), angle = 6.2832 * part(random);
        const double ahead = std::pow(10, power(random)), behind = std::pow(10, power(random));
        handed.clear();
        s.line(x - behind * std::cos(angle), y - behind * std::sin(angle), x + ahead * std::cos(angle),
               y + ahead * std::sin(angle));
        ASSERT_EQ(handed.size(), 1U);
        const segment& g = handed[0];
        for (const double end : {g.x1, g.x2}) ASSERT_TRUE(end >= -3 && end <= 1003) << end;
        for (const double end : {g.y1, g.y2}) ASSERT_TRUE(end >= -3 && end <= 603) << end;
        // The point stays on the line. Ends at 1E14 are themselves only good to some hundredths of a pixel.
        const double dx = g.x2 - g.x1, dy = g.y2 - g.y1, length = std::hypot(dx, dy);
        ASSERT_NEAR(((x - g.x1) * dy - (y - g.y1) * dx) / length, 0, 0.1);
    }
}

TEST(drawsurface, coordinatesbeyondallmeasure) {
    DrawSurface s = segmentsurface(1000, 600);
    s.line(500, 300, infinite, 300);
    ASSERT_EQ(handed.size(), 1U);
    EXPECT_EQ(handed[0].x2, 1003);
    EXPECT_EQ(handed[0].y2, 300);
    s.line(nan, 1, 2, 3);
    s.line(-10, -10, -10, 700); // beside the surface
    EXPECT_EQ(handed.size(), 1U);

    recordsurface r(1000, 600);
    DrawSurface& t = r.surface;
    t.circle(-20, 300, 10);
    t.circle(500, 300, 1E30);
    t.plot(-4, 10);
    t.setTextPoint(-20, 10);
    t.text("ab");
    t.box(nan, 0, 1, 1);
    EXPECT_EQ(r.lines, lines{});
    t.circle(-5, 300, 10);
    t.filledBox(-1E300, -infinite, 1E300, infinite, 0);
    EXPECT_EQ(r.lines, (lines{"circle -5 300 10 000000", "filledbox -3 -3 1003 603 000000"}));
}

} // namespace
} // namespace orv
