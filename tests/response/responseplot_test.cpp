// The plot of a response, its cursors and keys, and the paths that it shows together with the scene.
#include "response/responseplot.h"

#include "base/numbertext.h"
#include "platform/keycodes.h"
#include "response/raypathdisplay.h"
#include "response/raypathset.h"
#include "response/responselevels.h"
#include "scene/scenedrawing.h"
#include "tests/golden.h"

#include <cmath>

namespace orv {
namespace {

using lines = std::vector<std::string>;

constexpr int khz1 = 6; // bandIndex

// 1000 pixels to the second and 10 to the dB, for a response of 1 s.
struct plots : sessiontest {
    recordsurface plot{1100, 1400};

    plots() {
        ResponsePlot = responseplot{};
        forgetlevels();
        RayPathSet = raypathset{};
        ResultSet.soundSpeed = 340;
        SessionState.parameterSource = 1;
        response(4, 0.25F);
    }

    // Two receivers with empty responses.
    void response(std::int32_t lastslot, float step) const {
        ResultSet.timeStep = step;
        ResultSet.lastSlot = lastslot;
        RoomModel.receiverCount = 2;
        createresponse(lastslot + 1, 2);
        forgetlevels();
    }
    static float& energy(std::int32_t receiver, std::int32_t slot) {
        return takeresponse(receiver)[slot * bandcount + khz1 - 1];
    }

    void open() {
        showwholeresponse();
        openplot(plot.surface);
    }
    lines drawn(const std::function<void()>& act) {
        plot.lines.clear();
        act();
        return plot.lines;
    }
    static void drag(double from, double to) {
        pressplot(from, 1);
        evidence((from + to) / 2);
        evidence(to);
        zoom();
    }

    // Paths of receiver 1 or 2 from source 1, each over the given points, of a level of 20 dB.
    static void path(std::size_t receiver, double time, std::int32_t points = 0, std::int32_t face = 1) {
        RayPathSet.pathCountOf.resize(3);
        RayPathSet.paths.resize(3);
        raypath& made = RayPathSet.paths[receiver].emplace_back();
        ++RayPathSet.pathCountOf[receiver];
        made.source = 1;
        made.time = time;
        made.energy[khz1] = 100;
        made.pointCount = points;
        for (std::size_t j = 1; j <= pathpoints; ++j) {
            made.face[j] = face;
            made.x[j] = static_cast<float>(j);
        }
    }
    // As the menu entry does, with the window's part.
    void showpaths() {
        RoomModel.sourceCount = 1;
        scripted::expectwindow(responsewindowname, [&] { openplot(plot.surface); });
        viewraypaths();
    }
};

// Axes, bars half a step wide, decays in the middle of their steps, and what cursors and drags leave of them.
TEST_F(plots, everythingInItsPlace) {
    energy(1, 1) = 1000;
    energy(1, 2) = 10;
    energy(1, 3) = 1; // the floor
    SessionState.schroederOn = -1;
    SessionState.viewEnd = 1;
    std::string drawing;
    const auto draw = [&](const char* title, const std::function<void()>& act) {
        drawing.append("# ").append(title).append("\r\n");
        for (const std::string& line : drawn(act)) drawing += line + "\r\n";
    };
    draw("opened", [&] { open(); });
    EXPECT_EQ(ResponsePlot.FreqNo, 5);
    EXPECT_EQ(ResponsePlot.RecNo, 1);
    draw("first cursor, cut to its slot", [] { pressplot(0.6, 1); });
    EXPECT_EQ(ResponsePlot.Xtext, "0.5");
    EXPECT_EQ(ResponsePlot.PathLenght, "170");
    EXPECT_EQ(ResponsePlot.SPLlabel, "10.0 dB");
    EXPECT_EQ(ResponsePlot.schlabel, "10.8 dB"); // 10, 1, and the 1 that it begins with
    EXPECT_EQ(ResponsePlot.PathN, "");
    draw("second cursor", [] { pressplot(0.3, 2); });
    draw("and again", [] { pressplot(0.3, 2); });
    draw("too short a drag", [] { drag(0.5, 0.505); }); // the box comes, moves and goes
    EXPECT_EQ(SessionState.viewEnd, 1.0F);
    EXPECT_EQ(ResponsePlot.dragEnd, ResponsePlot.cursorStart);
    updatecursor(7, 1);
    EXPECT_EQ(ResponsePlot.cursorStart, 1.0F) << "limited to the response";
    expectgolden("responseplot.txt", drawing);
}

TEST_F(plots, dragsZoomFromEitherSideAndEscapeGoesBack) {
    open();
    for (const auto& [from, to] : {std::pair(0.25, 0.6), std::pair(0.75, -0.1)}) {
        EXPECT_EQ(drawn([from = from, to = to] { drag(from, to); })[1].substr(0, 4), "line");
        EXPECT_EQ(SessionState.viewStart, std::max(static_cast<float>(std::min(from, to)), 0.0F));
        EXPECT_EQ(SessionState.viewEnd, static_cast<float>(std::max(from, to)));
        presskey(keyescape, "");
        EXPECT_EQ(SessionState.viewStart, 0.0F);
        EXPECT_EQ(SessionState.viewEnd, 1.0F);
    }
}

TEST_F(plots, keysMoveTheCursor) {
    response(1000, 0.001F);
    open();
    const struct {
        int key;
        const char *from, *to;
    } cases[] = {{keyright, "0.1", "0.101"},   {keyleft, "0.1", "0.099"},  {keyup, "0.1", "0.11"},
                 {keydown, "0.1", "0.09"},     {keypageup, "0.1", "0.12"}, {keypagedown, "0.1", "0.08"},
                 {keyenter, ".2504", "0.25"},  {keyhome, "0.1", "0.001"},  {keyend, "0.1", "0.999"},
                 {keypageup, "0.99", "0.999"}, {keyleft, "0", "0.0"}};
    for (const auto& one : cases) {
        presskey(one.key, one.from);
        EXPECT_EQ(ResponsePlot.Xtext, one.to) << one.key;
    }
    updatecursor(0, 1);
    presskey('7', "0.1"); // typed: the cursor waits for Enter
    EXPECT_EQ(ResponsePlot.Xtext, "0.0");
    EXPECT_EQ(ResponsePlot.PathLenght, "33.66");
    response(1000, 0.0001F); // finer than the text
    open();
    pressplot(0.01, 1);
    for (int i = 0; i < 20; ++i) presskey(keyright, ResponsePlot.Xtext);
    EXPECT_EQ(ResponsePlot.Xtext, "0.012");
}

// A pure exponential gives its decay time; the energy far above the floor of 1 leaves the line straight.
TEST_F(plots, decayOfAnExponential) {
    const auto decay = [this](std::int32_t last, double first, double seconds) {
        response(last, 0.001F);
        for (std::int32_t t = 0; t <= last; ++t)
            energy(1, t) = static_cast<float>(first * std::pow(10.0, -6 * 0.001 * t / seconds));
        open();
    };
    decay(1000, 1e14, 0.5);
    EXPECT_EQ(ResponsePlot.revtime, "0.00 s") << "both cursors at 0";
    pressplot(0.05, 1);
    pressplot(0.35, 2);
    EXPECT_NEAR(static_cast<double>(ResponsePlot.measuredDrop), 36, 1E-3);
    EXPECT_NEAR(static_cast<double>(ResponsePlot.measuredDecay), 0.5, 1E-4);
    EXPECT_EQ(ResponsePlot.revtime, "0.50 s");
    pressplot(0.01, 2); // nothing falls backwards
    EXPECT_EQ(ResponsePlot.revtime, "0.00 s");
    // A line is laid through 32767 points at most; behind them the two levels alone give the decay.
    decay(40000, 1e16, 20);
    pressplot(33, 1);
    pressplot(36, 2);
    EXPECT_FLOAT_EQ(ResponsePlot.measuredDecay, 60 * 3 / ResponsePlot.measuredDrop);
}

TEST_F(plots, levelsFollowReceiverBandAndLoad) {
    energy(1, 1) = 1000;
    energy(2, 1) = 100;
    open();
    choosereceiver(2);
    EXPECT_FLOAT_EQ(ResponseLevels.responseLevel[1], 20);
    choosefrequency(4);
    EXPECT_FLOAT_EQ(ResponseLevels.responseLevel[1], 0);
    choosereceiver(0); // the room, which has no response of its own here
    EXPECT_EQ(ResponseLevels.shownReceiver, 0);
    choosereceiver(2);
    choosefrequency(5);
    energy(2, 1) = 10000;
    impulsedraw(0, 1);
    EXPECT_FLOAT_EQ(ResponseLevels.responseLevel[1], 20) << "kept while nothing else is chosen";
    scripted::atclose(responsewindowname, closeplot);
    forgetresponse();
    open();
    choosereceiver(2);
    EXPECT_FLOAT_EQ(ResponseLevels.responseLevel[1], 40);
    ResultSet.timeStep = 0; // no response at all
    pressplot(0.1, 1);
    presskey(keyright, "1");
    impulsedraw(0, 0);
}

TEST_F(plots, barsShowWhatPathsDoNotExplain) {
    energy(1, 1) = 300;
    path(1, 0.26);
    path(1, 0.3);
    path(1, 9); // later than the response
    showpaths();
    EXPECT_FLOAT_EQ(ResponseLevels.responseLevel[1], 20);
    EXPECT_FLOAT_EQ(ResponseLevels.pathLevel[3], 20);
    drawn([] { impulsedraw(0, 1); });
    const auto spikes = std::count_if(plot.lines.begin(), plot.lines.end(), [](const std::string& line) {
        return line.find("FF00FF") != line.npos;
    });
    EXPECT_EQ(spikes, 2);
    EXPECT_EQ(plot.lines[plot.lines.size() - 2], "line .26 20 .51 20 FF0000 mode 7");
    energy(1, 1) = 16777216;
    RayPathSet.paths[1][0].energy[khz1] = 1.25F;
    RayPathSet.paths[1][1].energy[khz1] = 16777213;
    forgetlevels();
    impulsedraw(0, 1);
    EXPECT_FLOAT_EQ(ResponseLevels.responseLevel[1], 3.0103F) << "of 2: single precision at each path";
    choosereceiver(0);
    EXPECT_EQ(ResponsePlot.RecNo, 1) << "only single receivers have paths";
    presskey(keyright, "");
    EXPECT_EQ(ResponsePlot.PathN, "2");
    EXPECT_EQ(ResponsePlot.Xtext, "0.3");
    presskey(keydown, "");
    EXPECT_EQ(SessionState.markedPath, 1);
    presskey(keyend, "");
    EXPECT_EQ(ResponsePlot.schlabel, "---");
    presskey(keyenter, "0.29");
    EXPECT_EQ(SessionState.selectedPath, 2);
    choosereceiver(2); // which has none
    EXPECT_EQ(SessionState.markedPath, 0);
    presskey(keyright, "");
    pressplot(0.5, 1);
    EXPECT_EQ(ResponsePlot.PathN, "0");
}

TEST_F(plots, nearestInTimeAndTheLaterOfTwo) {
    for (const double time : {0.25, 0.5, 0.5, 1.0}) path(1, time);
    ResponsePlot.RecNo = 1;
    const std::pair<double, int> cases[] = {{0, 1},    {0.3, 1},  {0.375, 2}, {0.5, 3},
                                            {0.75, 4}, {0.74, 3}, {2, 4}};
    for (const auto& [time, number] : cases) EXPECT_EQ(nearpath(time), number) << time;
    ResponsePlot.RecNo = 2;
    EXPECT_EQ(nearpath(1), 0);
}

// Looks along y: u = 5 x / (y + 10), v = 5 z / (y + 10).
struct scenepaths : plots {
    scenepaths() {
        SessionState.focalLength = 0.05F;
        SessionState.cameraY = -10;
        SessionState.colourRays = rgb(255, 0, 0);
        RoomModel.sourceCount = RoomModel.faceCount = 1;
        RoomModel.faceVertexCount(1) = 3;
        RoomModel.faceVertexX(1, 2) = 1;
        RoomModel.faceVertexZ(1, 3) = 1;
        RoomModel.sourceX(1) = -1;
        RoomModel.receiverZ(1) = 1;
        RoomModel.receiverX(1) = RoomModel.receiverY(1) = 0;
        extendbox(2, 2, 2);
        extendbox(-2, -2, -2);
        path(1, 0.1, 1);
    }

    // What an action draws on the scene, and the state that it leaves.
    std::string story;
    void step(const char* title, const std::function<void()>& act) {
        picture.lines.clear();
        act();
        story.append("# ").append(title).append("\r\n");
        for (const std::string& line : picture.lines) story += line + "\r\n";
        story += "marked" + wholetext(SessionState.markedPath);
        story += ischecked("viewraypaths") ? ", paths shown" : "";
        story += isenabled("ViewImpulse") ? ", response at hand\r\n" : "\r\n";
    }
};

TEST_F(scenepaths, goFromTheSourceOverTheFacesToTheReceiver) {
    step("flat", [&] {
        draw2dview(picture.surface, true);
        picture.lines.clear();
        drawpath(picture.surface, 1, 1);
    });
    step("spatial", [&] {
        draw3dview(picture.surface, true);
        picture.lines.clear();
        drawpath(picture.surface, 1, 1);
    });
    expectgolden("scenepaths.txt", story);
    picture.lines.clear();
    path(1, 2);         // later than the response
    path(1, 0.5, 1, 2); // a face that the room does not have
    path(1, 0.6, -5);
    RayPathSet.paths[1].back().source = 2;
    for (const std::int32_t none : {0, 2, 3, 4, 5}) drawpath(picture.surface, none, 1);
    drawpath(picture.surface, 1, 2);
    drawpath(picture.surface, 1, -1);
    EXPECT_EQ(picture.lines, lines());
}

// A path is drawn once more to go, as it was drawn, whatever has been chosen since.
TEST_F(scenepaths, theMarkedPathIsOnThePictureOnce) {
    path(1, 0.2);
    enablecommand("ViewImpulse", true);
    draw2dview(picture.surface, true);
    step("shown", [&] { showpaths(); });
    EXPECT_EQ(scripted::statustext(1), "Click near to a receiver for selecting its response...");
    step("the next one instead", [] { presskey(keyright, ""); });
    step("with the scene", [&] { draw2dview(picture.surface, true); });
    step("closed", [] {
        scripted::atclose(responsewindowname, closeplot);
        viewraypaths();
    });
    EXPECT_EQ(scripted::pointershape(), platform::shape::sizeall);
    step("shown again, with the levels kept", [&] { showpaths(); });
    step("the next one, under other choices", [] {
        SessionState.viewPlane = planechoice::YZ; // what the next drawing is to show
        SessionState.colourRays = rgb(0, 0, 255);
        presskey(keyright, "");
    });
    expectgolden("markedpath.txt", story);
}

} // namespace
} // namespace orv
