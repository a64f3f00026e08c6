// Contour maps: what the reader of contour files takes for a line and its colour, the order of the drawing,
// and the two commands from receivers to lines.
#include "maps/contourmaps.h"

#include "maps/levelfile.h"
#include "maps/redrawview.h"
#include "maps/surfer.h"
#include "tests/maps/mapsession.h"

namespace orv {
namespace {

using lines = std::vector<std::string>;

struct contourtest : mapsession {
    contourtest() {
        sessionstate& s = SessionState;
        s.Nx = s.Ny = 20;
        s.maxLevel = 76;
        s.useSurfer = true;
        s.gridReady = s.contourReady = -1;
        room(20, 10, 5);
        for (const float y : {0.0F, 10.0F}) {
            addreceiver(0, y, 0, 60); // .8 dB per m along x
            addreceiver(20, y, 0, 76);
        }
    }

    // The lines, and plots if any, that the entities of a file draw.
    lines drawn(const std::string& entities, const std::string& before = "") {
        writetext(contourfilename(), before + "0\nSECTION\n2\nENTITIES\n" + entities);
        picture.lines.clear();
        drawcontour2d(picture.surface);
        EXPECT_TRUE(items("plot").empty());
        return items("line");
    }
};

std::string colour(int level) {
    const int c = 16 * level + 8;
    char text[32];
    std::snprintf(text, sizeof text, " %02X00%02X width 2", c, 255 - c);
    return text;
}

TEST_F(contourtest, PolylinesOfBothForms) {
    const std::string head = "0\nLWPOLYLINE\n5\n1A\n8\n0\n62\n5\n100\nAcDbPolyline\n";
    const std::pair<std::string, lines> files[] = {
        {head + "90\n2\n70\n1\n10\n1\n20\n1\n10\n3\n20\n1\n10\n9\n20\n9\n0\nENDSEC\n",
         {"line 1 1 3 1" + colour(3)}},
        // A count that is passed by its step, or none at all: on to the end of the file, through others.
        {head + "10\n1\n20\n1\n10\n2\n20\n1\n90\n1\n10\n3\n20\n3\n0\nENDSEC\n",
         {"line 1 1 2 1" + colour(3), "line 2 1 3 3" + colour(3)}},
        {head + "10\n1\n20\n1\n0\nENDSEC\n10\n2\n20\n2\n", {"line 1 1 2 2" + colour(3)}},
        {head + "90\n3\n10\n1\n20\n1\n10\n2\n20\n1\n10\n3",
         {"line 1 1 2 1" + colour(3)}}, // cut within a point
        {head + "90\n3\n10\n1\n20\n1\n10\n2\n20\n1\n10\n3\r",
         {"line 1 1 2 1" + colour(3)}}, // ... and a line end
        // The old form begins at the point of its header.
        {"0\nPOLYLINE\n62\n1\n10\n0\n20\n0\n0\nVERTEX\n10\n2\n20\n1\n0\nVERTEX\n62\n5\n10\n3\n20\n2\n"
         "0\nSEQEND\n0\nVERTEX\n10\n9\n20\n9\n0\nENDSEC\n",
         {"line 0 0 2 1" + colour(15), "line 2 1 3 2" + colour(15)}},
        {"0\nacdbpolyline\n100\nACDBPOLYLINE\n10\n1\n20\n1\n10\n2\n20\n2\n", {}}};
    for (const auto& [entities, expected] : files) EXPECT_EQ(drawn(entities), expected) << entities;
}

TEST_F(contourtest, ColoursComeFromTheLastCode62OfAll) {
    const std::string line = "100\nAcDbPolyline\n90\n2\n10\n1\n20\n1\n10\n3\n20\n1\n";
    for (int level = 0; level < levelcount; ++level) {
        const std::string number = std::to_string(levelcolours[static_cast<std::size_t>(level)].number);
        EXPECT_EQ(drawn(line, "0\nSECTION\n2\nTABLES\n62\n" + number + "\n0\nENDSEC\n"),
                  (lines{"line 1 1 3 1" + colour(level)}));
    }
    EXPECT_EQ(drawn("62\n7\n" + line), (lines{"line 1 1 3 1 000000 width 2"})); // of no level
    EXPECT_EQ(drawn(line), (lines{"line 1 1 3 1 000000 width 2"})); // 0, which each map begins with
    EXPECT_TRUE(drawn("62\n256\n0\nLINE\n10\n1\n20\n1\n0\nENDSEC\n").empty()); // never looked up
    EXPECT_EQ(kindof([&] { drawn("62\n256\n" + line); }), errorkind::subscript);
    EXPECT_EQ(kindof([&] { drawn(line + "62\n-1\n" + line); }), errorkind::subscript);
    EXPECT_EQ(scripted::statustext(2), ""); // not the share of the file that was read
    EXPECT_EQ(kindof([&] { drawn("word\n"); }), errorkind::typemismatch);
}

TEST_F(contourtest, SchemesOfOneColourHaveNoScale) {
    const std::string line = "62\n5\n100\nAcDbPolyline\n90\n2\n10\n1\n20\n1\n10\n3\n20\n1\n0\nENDSEC\n";
    for (const auto& [scheme, expected] : {std::pair{3.0F, "000080"}, {4.0F, "000000"}}) {
        SessionState.colourSchemeIndex = scheme;
        EXPECT_EQ(drawn(line), (lines{std::string("line 1 1 3 1 ") + expected + " width 2"}));
        EXPECT_TRUE(items("filledbox").empty());
    }
    const contourpalette palette = makecontourpalette();
    EXPECT_EQ(palette[0], 0);
    EXPECT_EQ(palette[7], 0);
    SessionState.colourSchemeIndex = 1;
    EXPECT_EQ(makecontourpalette()[263], rgb(255, 0, 0));
}

TEST_F(contourtest, CommandsGridContourAndDraw) {
    SessionState.gridReady = SessionState.contourReady = 0;
    scripted::expectwindow("Mapping Options");
    runcommand("MapDoContour2D");
    EXPECT_EQ(SessionState.mapKind, "Contour");
    EXPECT_EQ(SessionState.contourReady, -1);
    EXPECT_EQ(scripted::statustext(2), "");
    // Levels 61 .. 75 stand a metre and a quarter apart.
    for (const auto& [place, level] : {std::pair("line 5 ", 4), {"line 18.7", 15}}) {
        ASSERT_FALSE(items(place).empty());
        EXPECT_NE(items(place).back().find(colour(level)), std::string::npos);
    }

    // A redraw reads the file again, in 3D too; without it there is a reason and the plain scene.
    SessionState.cameraX = 10, SessionState.cameraY = -30, SessionState.cameraZ = 20;
    SessionState.targetX = 10, SessionState.targetY = 5;
    platform::setvisible("Frame1", true);
    picture.lines.clear();
    redrawview(picture.surface);
    EXPECT_GT(std::count_if(picture.lines.begin(), picture.lines.end(),
                            [](const std::string& line) { return line.ends_with(" width 2"); }),
              100);
    EXPECT_EQ(picture.surface.drawWidth, 2);
    std::filesystem::remove(contourfilename());
    scripted::expectbox("orvanta.dxf", platform::answer::ok);
    redrawview(picture.surface);
    SessionState.maxLevel = SessionState.minLevel;
    scripted::expectbox("the same", platform::answer::ok);
    redrawview(picture.surface);
}

TEST_F(contourtest, RealContourFilesAreDrawn) {
    const std::string folder = std::string(REAL_FILES) + "/dxf/";
    if (!canopen(folder + "usa_lwpolylines.dxf")) GTEST_SKIP();
    RoomModel.roomMinX = RoomModel.roomMinY = -1e6F;
    RoomModel.roomMaxX = RoomModel.roomMaxY = 1e6F;
    const auto count = [&](const char* name) {
        writetext(contourfilename(), readtext(folder + name));
        picture.lines.clear();
        drawcontour2d(picture.surface);
        return items("line").size();
    };
    EXPECT_EQ(count("gdal_contour_16colours_lwpolyline.dxf"), 423U - 40);
    EXPECT_EQ(count("usa_lwpolylines.dxf"), 5650U - 59);
}

} // namespace
} // namespace orv
