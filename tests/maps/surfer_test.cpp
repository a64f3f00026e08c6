// What goes to the gridding engine and comes back: the files byte by byte, the two sequences of calls, and
// the menu of the separate programs.
#include "maps/surfer.h"

#include "maps/levelfile.h"
#include "maps/mapgrid.h"
#include "maps/pointdata.h"
#include "tests/golden.h"
#include "tests/maps/mapsession.h"

#include <limits>

namespace orv {
namespace {

struct surfertest : mapsession {
    surfertest() {
        SessionState.Nx = 12;
        SessionState.Ny = 11;
        SessionState.minLevel = -80;
        for (const float y : {0.0F, 5.5F})
            for (const float x : {0.0F, 12.0F}) addreceiver(x, y, -.25F, 60 + x + 2 * y);
    }
};

TEST_F(surfertest, PointDataStandsInZones) {
    ParameterSet.Leq(2, 12) = -std::numeric_limits<float>::infinity();
    SessionState.mirror = true;
    SessionState.Nx = SessionState.Ny = 1;
    surfergrid(0, 12, 0, 5.5);
    std::string points = readtext(inside("hall.DAT"));
    EXPECT_EQ(readpointdata(inside("hall.DAT")).count(), 6);
    SessionState.viewPlane = planechoice::YZ;
    surfergrid(0, 12, 0, 5.5);
    expectgolden("points.dat", points + readtext(inside("hall.DAT")));
}

TEST_F(surfertest, GridIsWrittenReadAndToldOfStepByStep) {
    SessionState.autorange = true;
    surfergrid(0, 12, 0, 5.5);
    expectgolden("hall.grd", readtext(inside("hall.GRD")));
    EXPECT_FLOAT_EQ(MapGrid(0, 11), 72);
    EXPECT_FLOAT_EQ(MapGrid(10, 11), 82.8F);
    EXPECT_EQ(SessionState.gridReady, -1);
    EXPECT_EQ(SessionState.levelStep, 2);
    EXPECT_EQ(SessionState.minLevel, 60);
    EXPECT_EQ(SessionState.maxLevel, 84);
    EXPECT_EQ(scripted::yieldcount(), 3);
    EXPECT_EQ(scripted::countcalls("beep"), 1U);
    EXPECT_EQ(picture.lines.back(), "clear FFFFFF");
    EXPECT_TRUE(
        std::count(picture.lines.begin(), picture.lines.end(), "text 0 0 000000 GRID was started..."));
}

TEST_F(surfertest, BlankingKeepsWhatTheFlagsSay) {
    SessionState.useBlanking = true;
    BlankingLines.blankingFile = inside("lines.bln");
    writetext(inside("lines.bln"),
              "5,0\r\n0,0\r\n6,0\r\n6,9\r\n0,9\r\n0,0\r\n4,1\r\n0,0\r\n3,0\r\n0,3\r\n0,0\r\n");
    surfergrid(0, 12, 0, 5.5);
    for (int j = 0; j < 11; ++j)
        for (int i = 0; i < 12; ++i) {
            const double x = 0.1 + i * 11.8 / 11, y = 0.05 + j * 0.54;
            EXPECT_EQ(MapGrid(j, i) != blankedvalue, x < 6 && x + y > 3) << i << " " << j;
        }
    // Nothing left: no grid, and the reason.
    writetext(inside("lines.bln"), "4,0\r\n90,0\r\n93,0\r\n90,3\r\n90,0\r\n");
    SessionState.gridReady = 0;
    EXPECT_EQ(kindof([] { surfergrid(0, 12, 0, 5.5); }), errorkind::domain);
    EXPECT_EQ(SessionState.gridReady, 0);
    BlankingLines.blankingFile = inside("none.bln");
    EXPECT_EQ(kindof([] { surfergrid(0, 12, 0, 5.5); }), errorkind::filenotfound);
}

TEST_F(surfertest, LevelFileAndContourFile) {
    expectgolden("levels.lvl", leveltext(80, 96));
    surfergrid(0, 12, 0, 5.5);
    SessionState.minLevel = -80;
    surfertopo();
    EXPECT_EQ(SessionState.contourReady, -1);
    EXPECT_EQ(SessionState.levelStep, 5);
    EXPECT_NE(readtext(inside("orvanta.lvl")).find("\r\n-60 1 \"Navy Blue\""), std::string::npos);
    const auto levels = readlevels(inside("orvanta.lvl"));
    ASSERT_EQ(levels.size(), 16U);
    for (std::size_t k = 0; k < 16; ++k) EXPECT_EQ(levels[k].colourNumber, levelcolours[k].number);
    expectgolden("contours.dxf", readtext(inside("orvanta.dxf"))); // of -80, -70, ... 70 only the last is met
}

TEST_F(surfertest, BadFilesAreRefusedWithTheirName) {
    std::vector<std::string> told;
    for (const char* text : {"", "DSAA", "DSAA\n12", "DSAA\n12 11\n0 1\n0 1\n0 1\n1 2 3", "DSAA\nx",
                             "DSAA\n2000000000 2000000000\n0 1\n0 1\n0 1\n1 2 3"}) {
        writetext(inside("bad.grd"), text);
        told.push_back(refusalof([&] { readgrid(inside("bad.grd")); }));
    }
    for (const char* text : {"", "LVL3\r\n", "LVL2\r\n1 2 3\r\n", "LVL2\r\nx \"Plum\"\r\n"}) {
        writetext(inside("bad.lvl"), text);
        told.push_back(refusalof([&] { readlevels(inside("bad.lvl")); }));
    }
    expectgolden("refusedgrids.txt", told);
}

TEST_F(surfertest, RealGridsAreRead) {
    const std::string folder = std::string(REAL_FILES) + "/surfer/";
    if (!canopen(folder + "gio_tiny_10x10.grd")) GTEST_SKIP();
    EXPECT_EQ(readgrid(folder + "gio_tiny_10x10.grd").value(9, 0), 25);
    const regulargrid wrapped = readgrid(folder + "fatiando_wrapped_rows.grd");
    EXPECT_EQ(wrapped.value(10, 2), 2);
    EXPECT_EQ(readgrid(folder + "rcalpuff_81x81_trailer.grd").frame.rows, 81);
}

TEST_F(surfertest, TheMenuStartsProgramsAndNamesWhatIsMissing) {
    SessionState.gridReady = SessionState.contourReady = -1;
    runcommand("SurfEnable");
    EXPECT_TRUE(ischecked("SurfEnable") && command("SurfTopo").visible && command("SurfSetP").visible);
    runcommand("SurfGrid");
    EXPECT_EQ(SessionState.gridReady, 0);
    EXPECT_EQ(SessionState.contourReady, -1);
    runcommand("SurfTopo");
    EXPECT_EQ(SessionState.contourReady, 0);
    scripted::setprograms(false);
    for (const char* program : {"Surf.PIF", "Plotw.PIF", "SetPlotw.PIF"})
        scripted::expectbox(program, platform::answer::ok);
    runcommand("SurfSurf"), runcommand("SurfPlot"), runcommand("SurfSetP");
    expectgolden("surferprograms.txt", scripted::callswith("start"));
    runcommand("SurfEnable");
    EXPECT_FALSE(ischecked("SurfEnable") || command("SurfTopo").visible || command("SurfPlot").visible);
}

} // namespace
} // namespace orv
