// Pan, orbit and pick in the main picture.
#include "scene/pointer.h"

#include "response/responseplot.h"
#include "scene/scenedrawing.h"
#include "tests/testsupport.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orv {
namespace {

constexpr pointerbuttons left{true, false}, right{false, true};

constexpr std::string_view band = "00FFFF dotted mode 7";

struct pointertest : sessiontest {
    pointertest() {
        SessionState.focalLength = 0.05F;
        SessionState.halfTurnConstant = std::numbers::pi / 2;
        extendbox(0, 0, 0);
        extendbox(10, 10, 10);
        RoomModel.receiverCount = 3;
        for (int i = 1; i <= 3; ++i) {
            RoomModel.receiverX(i) = static_cast<float>(i > 1 ? 8 : 2);
            RoomModel.receiverY(i) = 5;
            RoomModel.receiverZ(i) = 1;
        }
        draw2dview(picture.surface, true);
        picture.lines.clear();
    }

    // From the window's middle by shares of its width and height.
    void drag(pointerbuttons button, double dx, double dy) const {
        const DrawSurface& s = picture.surface;
        const double x = (s.left + s.right) / 2, y = (s.top + s.bottom) / 2;
        picturepress(button, x, y);
        picturemove(button, x + dx * s.windowWidth() / 2, y + dy * s.windowHeight() / 2);
        picturemove(button, x + dx * s.windowWidth(), y + dy * s.windowHeight());
        picturerelease(button, x + dx * s.windowWidth(), y + dy * s.windowHeight());
    }
};

TEST_F(pointertest, aDragMovesThePictureByItself) {
    for (const pointerbuttons button : {left, right}) { // in 2D they do the same
        SessionState.panX = SessionState.panY = 0;
        picture.lines.clear();
        drag(button, 0.5, -0.25);
        EXPECT_EQ(SessionState.panX, -0.5F);
        EXPECT_EQ(SessionState.panY, 0.25F);
        EXPECT_EQ(std::ranges::count_if(picture.lines, [](const auto& line) { return line.ends_with(band); }),
                  4);
        draw2dview(picture.surface, true);
    }
    picture.surface.setDrawWidth(9); // of a map that is being drawn
    picturepress(left, 0, 0);
    picture.lines.clear();
    picturemove(left, 1, 1);
    EXPECT_EQ(picture.lines.back(), "line 0 0 1 1 " + std::string(band));
    EXPECT_EQ(picture.surface.drawWidth, 9);
    picturerelease(left, 0, 0);
    picture.lines.clear();
    picturerelease(left, 0, 0); // no press went before
    picturemove({}, 5, 5);
    EXPECT_TRUE(picture.lines.empty());
}

TEST_F(pointertest, anOrbitTurnsTheCameraAboutItsTarget) {
    sessionstate& s = SessionState;
    draw3dview(picture.surface, true);
    platform::settext("CamX", "0"); // what the fields show counts, a 0 too
    platform::settext("CamY", "-20.0");
    platform::settext("CamZ", "3.5");
    s.cameraX = 99;
    const DrawSurface& p = picture.surface;
    picturepress(right, 0, 0);
    EXPECT_EQ(s.cameraX, 0.0F);
    EXPECT_EQ(scripted::pointershape(), platform::shape::sizeall);
    picture.lines.clear();
    picturemove(right, 0.1 * p.windowWidth(), 0.2 * p.windowHeight());
    EXPECT_EQ(picture.lines.size(), 4U) << "cleared, and three axes";
    const double radius = std::hypot(20, 3.5), azimuth = -std::numbers::pi / 4 - 0.5;
    const double elevation = std::atan(3.5 / radius) + 1;
    EXPECT_NEAR(static_cast<double>(s.cameraX), radius * std::cos(elevation) * std::cos(azimuth), 1E-5);
    EXPECT_NEAR(static_cast<double>(s.cameraY), radius * std::cos(elevation) * std::sin(azimuth), 1E-5);
    EXPECT_NEAR(static_cast<double>(s.cameraZ), radius * std::sin(elevation), 1E-5);
    picturerelease(right, 0, 0);
    EXPECT_EQ(s.panX, 0.0F);
    EXPECT_GT(picture.lines.size(), 12U) << "the scene is back";
    draw2dview(picture.surface, true);
    picturepress(right, 0, 0);
    draw3dview(picture.surface, true); // by a key, with the button held
    const float camera = s.cameraX;
    picturemove(right, 1, 1);
    EXPECT_EQ(s.cameraX, camera) << "no orbit has begun";
    picturerelease(right, 1, 1);
    // A camera on its target has nowhere to turn; the program goes on.
    for (const char* field : {"CamX", "CamY", "CamZ"}) platform::settext(field, "0");
    drag(right, 0.1, 0.1);
}

// Half of pi stands in the place of pi.
TEST_F(pointertest, anglesJumpOnTheSideOfSmallerX) {
    const double quarter = std::numbers::pi / 4;
    for (const auto& [y, x] : {std::pair(1, 1), {1, -1}, {2, 0}}) // -45 degrees less 90, and 180 up again
        EXPECT_DOUBLE_EQ(angleof(y, x), quarter);
    for (const auto& [y, x] : {std::pair(-1, 1), {-1, -1}, {0, 0}}) EXPECT_DOUBLE_EQ(angleof(y, x), -quarter);
}

TEST_F(pointertest, theNearestReceiverIsPicked) {
    ResponsePlot = responseplot{};
    setnearestrec(7, 4);
    EXPECT_EQ(ResponsePlot.RecNo, 2) << "the first of two in one place";
    setnearestrec(-1500, 5);
    EXPECT_EQ(ResponsePlot.RecNo, 2) << "too far away";
    RoomModel.receiverCount = 0;
    setnearestrec(2, 5);
    EXPECT_EQ(ResponsePlot.RecNo, 2);
    RoomModel.receiverCount = 3;
    picturepress(left, 2, 5);
    EXPECT_EQ(ResponsePlot.RecNo, 2) << "paths are not shown";
    picturerelease(left, 2, 5);
    checkcommand("viewraypaths", true);
    picturepress(left, 2, 5);
    EXPECT_EQ(ResponsePlot.RecNo, 1);
    picturerelease(left, 2, 5);
    EXPECT_EQ(scripted::statustext(1), "Click near to a receiver for selecting its response...");
    EXPECT_TRUE(scripted::called("updatewindow Impulse Response"));
    SessionState.cameraY = -10; // u = 5 x / (y + 10)
    draw3dview(picture.surface, true);
    setnearestrec(2.6, 0.3);
    EXPECT_EQ(ResponsePlot.RecNo, 2);
}

TEST_F(pointertest, aDoubleClickTogglesTheRedraw) {
    SessionState.autoRedraw = on;
    picturedoubleclick();
    EXPECT_EQ(SessionState.autoRedraw, off);
    EXPECT_EQ(platform::gettext("Redisplay"), "Manual Redraw");
    pictureescape(); // no line is being entered
}

} // namespace
} // namespace orv
