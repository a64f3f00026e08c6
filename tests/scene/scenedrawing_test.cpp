// The pictures, item by item, and what a drawing does beside them.
#include "scene/scenedrawing.h"

#include "maps/blanking.h"
#include "maps/redrawview.h"
#include "platform/keycodes.h"
#include "scene/camera.h"
#include "scene/viewcommands.h"
#include "shell/startup.h"
#include "tests/golden.h"

#include <algorithm>
#include <initializer_list>
#include <string>
#include <tuple>
#include <vector>

namespace orv {
namespace {

using lines = std::vector<std::string>;
using corner = std::tuple<float, float, float>;

struct scenetest : sessiontest {
    lines pictures;

    scenetest() {
        sessionstate& s = SessionState;
        s.focalLength = 0.05F;
        s.autoRedraw = on;
        s.colourSources = rgb(255, 0, 0);
        s.colourPosted = rgb(0, 0, 1);
        s.colourRays = rgb(255, 0, 2);
        s.colourRoom = rgb(0, 0, 3);
        s.colourReceivers = rgb(0, 0, 4);
        s.geometryFileName = "hall.ray";
        s.parameterName = "Leq";
        s.bandIndex = 12;
        // Looks along y; the picture plane stands 5 m ahead: u = 5 x / (y + 10), v = 5 z / (y + 10).
        s.cameraY = -10;
        ViewCamera = viewcamera{};
    }
    ~scenetest() override { BlankingLines = {}; }

    static void face(std::initializer_list<corner> corners, std::int16_t material = 0) {
        const std::int32_t n = ++RoomModel.faceCount;
        int k = 0;
        for (const corner& p : corners) {
            ++k;
            std::tie(RoomModel.faceVertexX(n, k), RoomModel.faceVertexY(n, k), RoomModel.faceVertexZ(n, k)) =
                p;
            std::apply(extendbox, p);
        }
        RoomModel.faceVertexCount(n) = static_cast<std::int16_t>(k);
        RoomModel.faceMaterial(n) = material;
    }

    // A source, a receiver and a ray line from `ray` in the direction `d`.
    static void points(const corner& source, const corner& receiver, const corner& ray, const corner& d) {
        roommodel& r = RoomModel;
        r.sourceCount = r.receiverCount = r.rayLineCount = 1;
        std::tie(r.sourceX(1), r.sourceY(1), r.sourceZ(1)) = source;
        std::tie(r.receiverX(1), r.receiverY(1), r.receiverZ(1)) = receiver;
        std::tie(r.rayLineX1(1), r.rayLineY1(1), r.rayLineZ1(1)) = ray;
        std::tie(r.rayLineX2(1), r.rayLineY2(1), r.rayLineZ2(1)) = d;
    }

    // A floor of 10 x 5 m with its box 4 m high; on 800 x 500 pixels the XY window is -1..11, -1.25..6.25.
    static void floorroom() {
        face({{0, 0, 0}, {10, 0, 0}, {10, 5, 0}, {0, 5, 0}});
        extendbox(10, 5, 4);
        points({2, 1, 1}, {8, 4, 1}, {4, 2, 1}, {0.1F, 0.02F, 0.04F});
    }

    // A wall of 4 x 2 m at y = 0, before the camera; the box reaches to y = 10.
    void wallroom() {
        picture.surface.resize(750, 500, 1);
        face({{-2, 0, -1}, {2, 0, -1}, {2, 0, 1}, {-2, 0, 1}}, 7);
        extendbox(2, 10, 1);
        points({-2, 0, 0}, {2, 10, 0}, {0, 0, 0}, {0, 0, 0.02F});
        picture.lines.clear();
    }

    // Adds what a view draws to `pictures`, under a heading.
    void show(const std::string& what, bool solid, bool clear = true) {
        picture.lines.clear();
        solid ? draw3dview(picture.surface, clear) : draw2dview(picture.surface, clear);
        pictures.push_back("# " + what);
        pictures.insert(pictures.end(), picture.lines.begin(), picture.lines.end());
    }

    // A line from (1, 2) to (3, 2).
    static void blankingline() {
        blankinglines& b = BlankingLines;
        b.blanklineCount = 1;
        b.blanklinePoints(1) = 2;
        std::tie(b.blanklineX(1, 1), b.blanklineY(1, 1)) = std::tuple(1.0F, 2.0F);
        std::tie(b.blanklineX(1, 2), b.blanklineY(1, 2)) = std::tuple(3.0F, 2.0F);
        SessionState.colourBlanking = rgb(0, 0, 9);
        SessionState.mapThirdCoordinate = 1;
    }
    static void hide(std::initializer_list<const char*> layers) {
        for (const char* layer : layers) checkcommand(layer, false);
    }
};

TEST_F(scenetest, views2d) {
    floorroom();
    checkcommand("Vrays", true);
    SessionState.parameterSource = 1;
    ParameterSet.Leq(1, 12) = 71.254F;
    SessionState.mapKind = "Dither";
    show("All layers. Axes reach to 1.2 times the maxima, rays 50 times their direction", false);
    EXPECT_EQ(SessionState.mapKind, "Normal");
    EXPECT_EQ(scripted::pointershape(), platform::shape::normal);
    EXPECT_TRUE(isenabled("Cprint"));
    EXPECT_TRUE(platform::isvisible("Frame2DView"));
    hide({"CamVrec", "Vrays"});
    SessionState.viewPlane = planechoice::YZ;
    SessionState.parameterSource = -1;
    show("Across y, up z, but the axes are the box's x and y; circles at values without receivers", false);
    hide({"Vroom", "Vsource", "Vaxes", "Post"});
    show("No layers, not cleared", false, false);
    SessionState.viewPlane = planechoice::XY;
    blankingline();
    show("A blanking line has circles but for its last point", false);
    expectgolden("views2d.txt", pictures);
}

TEST_F(scenetest, views3d) {
    wallroom();
    RoomModel.doorCount = RoomModel.holeCount = 1;
    RoomModel.doorVertexCount(1) = 2;
    RoomModel.holeVertexCount(1) = 3;
    const corner corners[] = {{-1, 0, -1}, {1, 0, -1}, {1, 0, 0}, {-1, 0, 0}};
    for (int k = 1; k <= 4; ++k) {
        roommodel& r = RoomModel;
        std::tie(r.doorVertexX(1, k), r.doorVertexY(1, k), r.doorVertexZ(1, k)) = corners[k - 1];
        std::tie(r.holeVertexX(1, k), r.holeVertexY(1, k), r.holeVertexZ(1, k)) = corners[k - 1];
    }
    checkcommand("Vrays", true);
    SessionState.parameterSource = 1;
    SessionState.mapKind = "Contour";
    picture.surface.setDrawWidth(5);
    show("All layers. Axes reach to 1.3 times the maxima; a door has four edges, whatever its count", true);
    EXPECT_EQ(SessionState.mapKind, "Normal");
    EXPECT_TRUE(platform::isvisible("Frame1"));
    RoomModel.doorCount = RoomModel.holeCount = 0;
    hide({"Vsource", "CamVrec", "Vaxes", "Vrays"});
    blankingline();
    SessionState.viewPlane = planechoice::XZ; // x, y and the map's height all the same
    show("A blanking line", true);
    hide({"BLNview"});
    RoomModel.faceVertexY(1, 1) = -11;
    show("A corner behind the camera, at (-12345, 0); not cleared, and no blanking line", true, false);
    RoomModel.faceVertexY(1, 1) = 0;
    face({{-2, 0, -1}, {2, 0, -1}, {2, 0, 1}, {0, 0, 9}, {-2, 0, 1}}, 3); // the fifth vertex is not shown
    face({{0, 0, 0}, {3, 0, 0}, {0, 0, 3}}, 2001);                        // no such material
    SessionState.shrinkFaces = true;
    SessionState.materialColour(7) = rgb(0x12, 0x34, 0x56);
    SessionState.materialColour(3) = rgb(0, 0x77, 0);
    show("Shrunk faces of four vertices; one that fails is left out", true);
    expectgolden("views3d.txt", pictures);
}

TEST_F(scenetest, sourcelabels) {
    const std::pair<int, const char*> labels[] = {{1, "A"},   {25, "Y"},  {26, "@Z"}, // the fault is meant
                                                  {27, "AA"}, {52, "AZ"}, {702, "ZZ"}};
    for (const auto& [source, label] : labels) EXPECT_EQ(sourcelabel(source), label);
    EXPECT_EQ(sourcelabel(20000).size(), 2U);
}

TEST_F(scenetest, titles) {
    sessionstate& s = SessionState;
    pictures.push_back(scenetitle());
    s.parameterSource = 1;
    const struct {
        const char* parameter;
        int band, corrected, equalized;
    } cases[] = {{"T30", 6, 0, 0},  {"T30", 11, -1, -1}, {"STI", 11, -1, -1},
                 {"STI", 12, 0, 0}, {"STI", 5, 0, 0},    {"STI", 13, 0, 0}};
    for (const auto& one : cases) {
        s.parameterName = one.parameter;
        s.bandIndex = one.band;
        s.backgroundNoiseFlag = s.forceVoiceSplFlag = one.corrected;
        s.equalizeSpectrumFlag = one.equalized;
        pictures.push_back(scenetitle());
    }
    expectgolden("titles.txt", pictures);
}

TEST_F(scenetest, impossibleviewskeepthepicture) {
    wallroom();
    SessionState.mapKind = "Dither";
    SessionState.cameraY = SessionState.targetY = 3; // on the target
    SessionState.cameraX = SessionState.targetX = 1.5F;
    Redraw();
    EXPECT_EQ(picture.lines, lines{"restore"});
    EXPECT_TRUE(platform::isvisible("Frame1")) << "the way out";
    EXPECT_EQ(SessionState.autoRedraw, on);
    Cprint(); // would print an empty page: no dialog comes

    picture.lines.clear();
    RoomModel.roomMaxY = RoomModel.roomMinY = 0;
    chooseplane(planechoice::YZ);
    EXPECT_EQ(picture.lines, (lines{"clear FFFFFF", "restore"}));
    EXPECT_EQ(SessionState.mapKind, "Dither");
}

// --- Yields ---

struct manyfaces : scenetest {
    manyfaces() {
        wallroom();
        for (int i = 0; i < 999; ++i) face({{-2, 0, -1}, {2, 0, -1}, {2, 0, 1}, {-2, 0, 1}});
        checkcommand("Vaxes", false);
    }
};

TEST_F(manyfaces, escapeleavesthefaces) {
    for (const bool solid : {false, true}) {
        picture.lines.clear();
        const std::int64_t before = scripted::yieldcount();
        scripted::atyield(2, [] { mainkey(keyescape); });
        solid ? draw3dview(picture.surface, true) : draw2dview(picture.surface, true);
        EXPECT_EQ(scripted::yieldcount() - before, 2);
        EXPECT_EQ(items("line").size(), 2U * 256U * 4U);
        EXPECT_EQ(items("circle").size(), solid ? 1U : 2U); // the drawing goes on with what follows

        picture.lines.clear();
        solid ? draw3dview(picture.surface, true) : draw2dview(picture.surface, true);
        EXPECT_EQ(items("line").size(), 4000U); // the next one starts afresh
    }
}

TEST_F(manyfaces, drawingaskedforatayieldcomesafterwards) {
    platform::setvisible("Frame1", true);
    scripted::atyield(1, [&] {
        EXPECT_EQ(SessionState.autoRedraw, off); // a field that loses the focus now asks for nothing
        chooseplane(planechoice::XZ);
        CamRedr2D();
    });
    redrawview(picture.surface);
    const auto last = std::ranges::find(picture.lines.rbegin(), picture.lines.rend(), "clear FFFFFF");
    EXPECT_GT(last - picture.lines.rbegin(), 5000); // the whole 2D view, from a cleared surface
    EXPECT_EQ(items("keep").size(), 1U);            // the half picture was none to keep
    EXPECT_EQ(SessionState.autoRedraw, on);
    EXPECT_TRUE(platform::isvisible("Frame2DView"));
}

// --- Commands ---

TEST_F(scenetest, printingdrawsthelastviewonthepage) {
    floorroom();
    recordsurface page(1000, 700);
    for (const bool solid : {true, false}) {
        solid ? Redraw() : CamRedr2D();
        SessionState.mapKind = "Contour";
        picture.lines.clear();
        page.lines.clear();
        scripted::expectprint(&page.surface);
        Cprint();
        EXPECT_TRUE(picture.lines.empty());
        const auto plots = std::ranges::count_if(
            page.lines, [](const std::string& line) { return line.starts_with("plot"); });
        EXPECT_EQ(plots, solid ? 0 : 1); // which only the 2D views have
        EXPECT_EQ(SessionState.mapKind, "Contour");
    }
}

} // namespace
} // namespace orv
