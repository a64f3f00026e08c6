// What goes to the gridding engine and comes back: the files byte by byte, the two sequences of calls, and
// the menu of the separate programs.
#include "maps/surfer.h"

#include "maps/blanking.h"
#include "maps/contourfile.h"
#include "maps/levelfile.h"
#include "maps/mapgrid.h"
#include "maps/pointdata.h"
#include "tests/failures.h"
#include "tests/testsupport.h"

#include <cmath>
#include <limits>

namespace orv {
namespace {

struct surfertest : sessiontest {
    surfertest() {
        sessionstate& s = SessionState;
        s.resultFileName = inside("hall._01");
        s.parameterName = "Leq";
        s.parameterSource = 1;
        s.bandIndex = 12;
        s.Nx = 12;
        s.Ny = 11;
        s.minLevel = -80;
        s.maxLevel = 80;
        s.surferMethod = 3;
        RoomModel.receiverCount = 4;
        const float xs[] = {0, 12, 0, 12}, ys[] = {0, 0, 5.5F, 5.5F};
        for (std::int32_t i = 1; i <= 4; ++i) {
            RoomModel.receiverX(i) = xs[i - 1];
            RoomModel.receiverY(i) = ys[i - 1];
            RoomModel.receiverZ(i) = -.25F;
            ParameterSet.Leq(i, 12) = 60 + xs[i - 1] + 2 * ys[i - 1];
        }
    }
    ~surfertest() override { BlankingLines = {}; }

    // The grid's text without its first lines.
    std::string head(int lines) const {
        std::string text = readtext(inside("hall.GRD"));
        std::size_t end = 0;
        for (; lines > 0; --lines) end = text.find("\r\n", end) + 2;
        return text.substr(0, end);
    }
};

TEST_F(surfertest, PointDataStandsInZones) {
    ParameterSet.Leq(2, 12) = -std::numeric_limits<float>::infinity();
    SessionState.mirror = true;
    SessionState.Nx = SessionState.Ny = 1;
    surfergrid(0, 12, 0, 5.5);
    EXPECT_EQ(readtext(inside("hall.DAT")), " 0             0             60\r\n"
                                            " 12            0            nan\r\n"
                                            " 0             5.5           71\r\n"
                                            " 12            5.5           83\r\n"
                                            " 0             0             60\r\n"
                                            " 12            0            nan\r\n"
                                            " 0            -5.5           71\r\n"
                                            " 12           -5.5           83\r\n");
    EXPECT_EQ(readpointdata(inside("hall.DAT")).count(), 6);
    SessionState.viewPlane = planechoice::YZ;
    surfergrid(0, 12, 0, 5.5);
    EXPECT_NE(readtext(inside("hall.DAT")).find("\r\n-5.5          -.25           83\r\n"),
              std::string::npos);
}

TEST_F(surfertest, GridIsWrittenReadAndToldOfStepByStep) {
    SessionState.autorange = true;
    surfergrid(0, 12, 0, 5.5);
    EXPECT_EQ(head(9),
              "DSAA\r\n12 11\r\n.1 11.9\r\n.05 5.45\r\n60.2 82.8\r\n"
              "60.2 61.27273 62.34545 63.41818 64.49091 65.56364 66.63636 67.70909 68.78182 69.85455\r\n"
              "70.92727 72\r\n\r\n"
              "61.28 62.35273 63.42545 64.49818 65.57091 66.64364 67.71636 68.78909 69.86182 70.93455\r\n");
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
    EXPECT_EQ(head(4), "DSAA\r\n12 11\r\n.1 11.9\r\n.05 5.45\r\n");
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
    EXPECT_EQ(leveltext(80, 96).substr(0, 233),
              "LVL2\r\n'Level Flags LColor LStyle LWidth FFGColor FBGColor FPattern FMode\r\n"
              " 80 1 \"Plum\" \"Solid\" 0 \"Black\" \"White\" \"Solid\" 2 \r\n"
              " 81 1 \"Deep Navy Blue\" \"Solid\" 0 \"R17 G17 B17\" \"White\" \"Solid\" 2 \r\n"
              " 82 1 \"Navy Blue\" \"Solid\" 0 \"R34 G34 B34\"");
    surfergrid(0, 12, 0, 5.5);
    SessionState.minLevel = -80;
    surfertopo();
    EXPECT_EQ(SessionState.contourReady, -1);
    EXPECT_EQ(SessionState.levelStep, 5);
    EXPECT_NE(readtext(inside("orvanta.lvl")).find("\r\n-60 1 \"Navy Blue\""), std::string::npos);
    const auto levels = readlevels(inside("orvanta.lvl"));
    ASSERT_EQ(levels.size(), 16U);
    for (std::size_t k = 0; k < 16; ++k) EXPECT_EQ(levels[k].colourNumber, levelcolours[k].number);
    // Of -80, -70, ... 70 only the last is met, by one line.
    const std::string drawing = readtext(inside("orvanta.dxf"));
    const std::size_t first = drawing.find("LWPOLYLINE");
    const std::size_t count = drawing.find("AcDbPolyline\r\n 90\r\n", first);
    EXPECT_EQ(drawing.substr(first, count - first),
              "LWPOLYLINE\r\n  5\r\n1A\r\n100\r\nAcDbEntity\r\n  8\r\n0\r\n 62\r\n1\r\n100\r\n");
    EXPECT_EQ(drawing.find("LWPOLYLINE", count), std::string::npos);
    EXPECT_EQ(drawing.substr(drawing.size() - 10), "  0\r\nEOF\r\n");
}

TEST_F(surfertest, BadFilesAreRefusedWithTheirName) {
    for (const char* text : {"", "DSAA", "DSAA\n12", "DSAA\n12 11\n0 1\n0 1\n0 1\n1 2 3", "DSAA\nx"}) {
        writetext(inside("bad.grd"), text);
        EXPECT_NE(failureof([&] { readgrid(inside("bad.grd")); }).text.find("bad.grd"), std::string::npos)
            << text;
    }
    writetext(inside("bad.grd"), "DSAA\n2000000000 2000000000\n0 1\n0 1\n0 1\n1 2 3");
    EXPECT_EQ(kindof([&] { readgrid(inside("bad.grd")); }), errorkind::subscript);
    for (const char* text : {"", "LVL3\r\n", "LVL2\r\n1 2 3\r\n", "LVL2\r\nx \"Plum\"\r\n"}) {
        writetext(inside("bad.lvl"), text);
        EXPECT_EQ(kindof([&] { readlevels(inside("bad.lvl")); }), errorkind::typemismatch) << text;
    }
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
    EXPECT_EQ(scripted::callswith("start"),
              (std::vector<std::string>{"start|GRIDw.PIF Grid.dat", "start|TOPOw.PIF Grid.grd",
                                        "start|Surf.PIF Grid.grd", "start|Plotw.PIF Grid.plt",
                                        "start|SetPlotw.PIF"}));
    runcommand("SurfEnable");
    EXPECT_FALSE(ischecked("SurfEnable") || command("SurfTopo").visible || command("SurfPlot").visible);
}

} // namespace
} // namespace orv
