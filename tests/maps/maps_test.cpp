// The extent and levels of a map, and the two mosaic maps cell by cell against a naive loop.
#include "maps/mapfield.h"

#include "maps/colourschemes.h"
#include "maps/mapgrid.h"
#include "maps/mosaicmaps.h"
#include "maps/redrawview.h"
#include "scene/camera.h"
#include "scene/scenedrawing.h"
#include "tests/maps/mapsession.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace orv {
namespace {

using lines = std::vector<std::string>;

struct maptest : mapsession {
    maptest() {
        SessionState.Nx = SessionState.Ny = 50;
        room(30, 20, 8);
        receivers(7);
    }

    static void receivers(std::int32_t count) {
        RoomModel.receiverCount = 0;
        for (std::int32_t i = 1; i <= count; ++i) {
            const float k = static_cast<float>(i);
            addreceiver(4 * k - 1.3F, std::fmod(7.7F * k, 19.0F), 1 + 0.25F * k,
                        60 + std::fmod(3.37F * k, 20.0F));
        }
    }

    // Every receiver weighted by 1 / d2, one after the other.
    static double naive(double c1, double c2) {
        double weights = 0, values = 0;
        for (std::int32_t i = 1; i <= RoomModel.receiverCount; ++i) {
            const picturepoint r = inplane({static_cast<double>(RoomModel.receiverX(i)),
                                            static_cast<double>(RoomModel.receiverY(i)),
                                            static_cast<double>(RoomModel.receiverZ(i))});
            const double d2 = std::max(0.1, (r.x - c1) * (r.x - c1) + (r.y - c2) * (r.y - c2));
            weights += 1 / d2;
            values += 1 / d2 * parametervalue(i, SessionState.bandIndex);
        }
        return values / weights;
    }

    // The cells of a map in two dimensions.
    lines cells() const {
        lines found;
        for (const std::string& box : items("box "))
            if (box.find(" fill ") != std::string::npos) found.push_back(box);
        return found;
    }

    static std::string hexcolour(double value) {
        const std::int32_t colour = schemecolour(levelindex(value));
        std::string text;
        for (const int shift : {4, 0, 12, 8, 20, 16}) text += "0123456789ABCDEF"[colour >> shift & 15];
        return text;
    }
};

TEST_F(maptest, AReceiverHasAWeightOfTen) {
    RoomModel.receiverCount = 0;
    addreceiver(0, 0, 1, 60);
    addreceiver(1, 0, 500, 82);    // the height plays no part
    SessionState.maxRadius = 0.5F; // neither does this
    EXPECT_DOUBLE_EQ(fieldvalue(receiversofmap(), 0, 0), (10 * 60 + 82) / 11.0);
}

TEST_F(maptest, Levels) {
    for (const auto& [range, step] : {std::pair(-1., .01), {.2, .01}, {.21, .02}, {50, 2}, {51, 5}})
        EXPECT_EQ(levelstepfor(range), step) << range;

    const struct {
        float low, high, minimum, maximum;
    } ranges[] = {{61.3F, 74.2F, 61, 75},            // steps of 1
                  {62, 72, 62, 72.5F},               // .5; an end on a step is raised by one more
                  {100.1F, 100.1F, 100.1F, 100.11F}, // one step of .01
                  {-3.1F, 60, -5, 65}};              // Int goes down below zero too
    receivers(2);
    for (const auto& one : ranges) {
        ParameterSet.Leq(1, 12) = one.high;
        ParameterSet.Leq(2, 12) = one.low;
        autorangelevels(receiversofmap());
        EXPECT_EQ(SessionState.minLevel, one.minimum);
        EXPECT_EQ(SessionState.maxLevel, one.maximum);
    }
    SessionState.minLevel = 60;
    SessionState.maxLevel = 80;
    EXPECT_TRUE(levelindex(59) == 0 && levelindex(70) == 127.5 && levelindex(81) == 255);
}

TEST_F(maptest, ExtentFollowsTheLinesThatAreKept) {
    SessionState.useBlanking = true;
    writetext(inside("a.bln"), "3,1\r\n2,8\r\n4,7\r\n6,6\r\n");
    readblanking(inside("a.bln"));
    EXPECT_EQ(mapextent().hi1, 30);
    BlankingLines.blanklineFlag(1) = blankoutside;
    const maprectangle kept = mapextent();
    EXPECT_TRUE(kept.lo1 == 2 && kept.hi1 == 6 && kept.lo2 == 6 && kept.hi2 == 8);
    EXPECT_DOUBLE_EQ(kept.cellWidth, 4 / 50.0);
    SessionState.useBlanking = false;
    EXPECT_EQ(mapextent().hi1, 30);
}

TEST_F(maptest, Mosaic2dCellByCell) {
    SessionState.Nx = 6;
    SessionState.Ny = 5;
    picture.surface.setFillStyle(fillstyle::transparent);
    drawdither2d(picture.surface);
    ASSERT_EQ(items("filledbox").size(), 2U * 16) << "the scale at once, and again over the cells";
    ASSERT_EQ(cells().size(), 30U);
    const auto number = [](double value) { return std::to_string(std::lround(value)); };
    for (int i = 0; i < 6; ++i)
        for (int j = 0; j < 5; ++j) {
            const std::string colour = hexcolour(naive(5 * i + 2.5, 4 * j + 2));
            // The lower edge of the picture comes second.
            const std::string expected = "box " + number(5 * i) + " " + number(4 * j + 4) + " " +
                                         number(5 * i + 5) + " " + number(4 * j) + " " + colour + " fill " +
                                         colour;
            EXPECT_EQ(cells()[static_cast<std::size_t>(5 * i + j)], expected);
        }
    const lines texts = items("text"); // 17 labels, the title, which tells of the map, 17 labels
    ASSERT_EQ(texts.size(), 35U);
    EXPECT_NE(texts[17].find("Freq.=Lin - Leq"), std::string::npos);
    EXPECT_FALSE(SessionState.mapInProgress);
    EXPECT_EQ(scripted::countcalls("yield"), 6U);
    EXPECT_TRUE(scripted::called("status 1|Dithering..."));
    EXPECT_TRUE(scripted::called("status 2| 33%"));
    EXPECT_EQ(scripted::statustext(2), "");
}

TEST_F(maptest, TheMiddleGreyIsLeftOut) {
    receivers(1);
    SessionState.colourSchemeIndex = 4;
    SessionState.Nx = SessionState.Ny = 1;
    for (const auto& [value, colour] :
         {std::pair(70.0F, "818181"), std::pair(69.8F, "828282")}) { // c = 127.5, 124.95
        ParameterSet.Leq(1, 12) = value;
        picture.lines.clear();
        drawdither2d(picture.surface);
        EXPECT_EQ(items("box 0 20 30 0").at(0), std::string("box 0 20 30 0 ") + colour + " fill " + colour);
    }
}

TEST_F(maptest, Strips3d) {
    // Looks along y; the picture plane stands 5 m ahead: u = 5 x / (y + 10), v = 5 z / (y + 10).
    SessionState.viewPlane = planechoice::XZ;
    SessionState.mapThirdCoordinate = 15;
    SessionState.cameraY = -10;
    SessionState.targetY = 10;
    SessionState.Nx = 3;
    SessionState.Ny = 2;
    RoomModel.roomMaxX = 9;
    platform::setvisible("Frame1", true);
    picture.surface.resize(750, 500, 1);                                    // 2.4 m high
    scripted::atyield(1, [] { SessionState.viewPlane = planechoice::XY; }); // too late for this map
    ASSERT_TRUE(drawdither3d(picture.surface, true));
    SessionState.viewPlane = planechoice::XZ;
    const lines strips = items("line");
    ASSERT_EQ(strips.size(), 6U);
    // A cell is 3 x 4 m, a fifth of that in the picture; 1.5 x .8 m of 2.4 m are 250 pixels.
    EXPECT_EQ(strips[0], "line 0 .4 .6 .4 " + hexcolour(naive(1.5, 2)) + " width 250");
    EXPECT_EQ(strips[1], "line 0 1.2 .6 1.2 " + hexcolour(naive(1.5, 6)) + " width 250");
    EXPECT_EQ(strips[2], "line .6 .4 1.2 .4 " + hexcolour(naive(4.5, 2)) + " width 250");
    EXPECT_EQ(items("filledbox").size(), 32U); // the scale again, on top
    EXPECT_EQ(items("clear").size(), 1U);
    EXPECT_EQ(picture.surface.drawWidth, 1);
}

TEST_F(maptest, GridAndBlankedNodes) {
    SessionState.useSurfer = true;
    SessionState.gridReady = -1;
    SessionState.Nx = 2;
    SessionState.Ny = 2;
    MapGrid(0, 0) = 61;
    MapGrid(0, 1) = 62; // row 0, column 1
    MapGrid(1, 0) = blankedvalue;
    MapGrid(1, 1) = 64;
    SessionState.mapKind = "Dither";
    redrawview(picture.surface); // a map that is still good is repeated
    EXPECT_EQ(items("box 0 10 15 0").size(), 1U);
    EXPECT_EQ(items("box 15 10 30 0").at(0).substr(15, 6), hexcolour(62));
    EXPECT_EQ(items("box 0 20 15 10").size(), 0U);
    EXPECT_EQ(SessionState.mapKind, "Dither");

    SessionState.gridReady = 0;
    SessionState.useSurfer = false;
    picture.lines.clear();
    redrawview(picture.surface); // the own interpolation is not
    EXPECT_EQ(items("filledbox").size(), 0U);
    EXPECT_EQ(SessionState.mapKind, "Dither");

    SessionState.gridReady = -1;
    SessionState.useSurfer = true;
    SessionState.cameraY = 10; // the corners of the upper cells lie in the camera's plane
    SessionState.targetY = 30;
    const auto beeps = [this] {
        const std::size_t before = scripted::countcalls("beep");
        EXPECT_TRUE(drawdither3d(picture.surface, true));
        return scripted::countcalls("beep") - before;
    };
    const std::size_t withblanked = beeps();
    MapGrid(1, 0) = 63;
    EXPECT_EQ(withblanked, beeps());
}

TEST_F(maptest, EscapeEndsTheColumns) {
    scripted::expectwindow("Mapping Options");
    scripted::atyield(3, [] { SessionState.drawAbort = on; });
    MapDoDither2D();
    EXPECT_EQ(cells().size(), 3U * 50);
    EXPECT_EQ(SessionState.mapKind, "Dither");
    EXPECT_FALSE(items("text").empty()); // the scene is drawn all the same
}

TEST_F(maptest, CancelAndImpossibleMaps) {
    scripted::expectwindow("Mapping Options", [] { SessionState.mapCancelled = true; });
    MapDoDither3D();
    EXPECT_TRUE(picture.lines.empty());
    EXPECT_FALSE(SessionState.mapCancelled);

    // Levels without a distance, no receivers, a parameter without a value in the band: a word, and the
    // scene.
    const auto refused = [&](const char* reason) {
        picture.lines.clear();
        scripted::expectwindow("Mapping Options");
        scripted::expectbox(reason, platform::answer::ok);
        MapDoDither2D();
        EXPECT_TRUE(items("filledbox").empty());
        EXPECT_EQ(SessionState.mapKind, "Normal");
        EXPECT_FALSE(SessionState.mapInProgress);
        EXPECT_FALSE(items("text").empty());
    };
    SessionState.maxLevel = SessionState.minLevel;
    refused("The lowest and the highest level are the same.");
    SessionState.maxLevel = 80;
    checkcommand("Post", true);
    SessionState.parameterName = "STI";
    SessionState.bandIndex = 2;
    refused("STI has no value below 125 Hz");
    RoomModel.receiverCount = 0;
    SessionState.autorange = true;
    refused("no receivers");
    EXPECT_EQ(SessionState.maxLevel, 80);
    SessionState.useSurfer = true;
    SessionState.gridReady = -1;
    RoomModel.roomMaxY = RoomModel.roomMinY;
    refused("no height");
}

TEST_F(maptest, APictureAskedForMeanwhileComesLast) {
    scripted::expectwindow("Mapping Options");
    scripted::atyield(2, [&] { draw2dview(picture.surface, true); });
    MapDoDither2D();
    EXPECT_EQ(items("clear").size(), 2U); // the map's, and the scene's behind it
    EXPECT_EQ(SessionState.mapKind, "Normal");
}

} // namespace
} // namespace orv
