// The camera, its two windows, and the editing of its fields.
#include "scene/camera.h"

#include "base/numbertext.h"
#include "tests/failures.h"
#include "tests/testsupport.h"

#include <algorithm>

namespace orv {
namespace {

struct cameratest : sessiontest {
    cameratest() {
        SessionState.focalLength = 0.05F;
        SessionState.autoRedraw = on;
        ViewCamera = viewcamera{};
    }

    static void place(float x, float y, float z, float tox, float toy, float toz) {
        sessionstate& s = SessionState;
        s.cameraX = x;
        s.cameraY = y;
        s.cameraZ = z;
        s.targetX = tox;
        s.targetY = toy;
        s.targetZ = toz;
    }

    static void room(float width, float depth, float height) {
        resetroom();
        extendbox(0, 0, 0);
        extendbox(width, depth, height);
    }
};

// The verification holds points before the camera.
TEST_F(cameratest, pointsbehindandpicturesbeyondthetarget) {
    const auto expectpoint = [](double x, double y, double z, double across, double upwards) {
        const picturepoint at = projectpoint({x, y, z});
        EXPECT_NEAR(at.x, across, 1E-6);
        EXPECT_NEAR(at.y, upwards, 1E-6);
    };
    place(0, 0, 0, 0, 10, 0);
    setupcamera();
    expectpoint(1, 20, 2, 0.25, 0.5); // the picture is 5 m ahead
    expectpoint(1, -1, 2, -12345, 0);
    place(0, 0, 0, 0, 4, 0);
    setupcamera();
    expectpoint(1, 20, 2, -0.25, -0.5); // turned, which is meant
}

TEST_F(cameratest, divisionbyzerokeepsthederivedfields) {
    place(0, 0, 0, 10, 0, 0);
    setupcamera();
    EXPECT_EQ(platform::gettext("FocLenght"), "50");
    EXPECT_EQ(platform::gettext("TargetX"), "10.0");
    const picturepoint beside = projectpoint({0, 7, 2});
    EXPECT_EQ(beside.x, 0);
    EXPECT_EQ(beside.y, 0);
    EXPECT_TRUE(scripted::called("beep"));
    // upright, on the target, and with the target in the picture plane
    const float cases[][6] = {{3, 4, 9, 3, 4, 1}, {1, 2, 3, 1, 2, 3}, {0, 0, 0, 5, 0, 0}};
    for (const auto& c : cases) {
        place(c[0], c[1], c[2], c[3], c[4], c[5]);
        EXPECT_EQ(kindof(setupcamera), errorkind::divisionbyzero);
        EXPECT_EQ(ViewCamera.planeOriginX, 5);
        EXPECT_EQ(ViewCamera.axisVZ, 1);
        EXPECT_EQ(lenientnumber(platform::gettext("TargetX")), static_cast<double>(c[3])); // texts come first
    }
}

TEST_F(cameratest, windowsofbothviews) {
    DrawSurface& s = picture.surface; // 800 x 500
    sessionstate& state = SessionState;
    room(10, 5, 4);
    scale2dview(s);
    state.viewPlane = planechoice::YZ;
    scale2dview(s); // as high as 4 m with their margin
    state.viewPlane = planechoice::XY;
    state.focalLength = 0.1F; // the middle half, moved
    state.panX = -0.5F;
    state.panY = 1;
    scale2dview(s);
    state.panX = 0.5F;
    state.panY = -0.25F;
    s.resize(500, 1000, 1);
    scale3dview(s);
    s.resize(800, 500, 1);
    state.focalLength = 0.05F;
    state.panX = state.panY = 0;
    state.viewPlane = planechoice::XZ;
    room(10, 5, 0);
    scale2dview(s); // flat, so half as wide as the surface asks, and the width doubles too
    picture.lines.erase(std::unique(picture.lines.begin(), picture.lines.end()), picture.lines.end());
    EXPECT_EQ(picture.lines, (std::vector<std::string>{"window -1 6.25 11 -1.25", "window -1.34 4.4 6.34 -.4",
                                                       "window -1 .625 5 -3.125", "window 0 5.4 3.6 -1.8",
                                                       "window -7 7.5 17 -7.5"}));
    room(0, 5, 4);
    EXPECT_EQ(kindof([&] { scale2dview(s); }), errorkind::divisionbyzero);
    room(10, 5, 4);
    state.focalLength = 0;
    EXPECT_EQ(kindof([&] { scale2dview(s); }), errorkind::divisionbyzero);
    EXPECT_FLOAT_EQ(static_cast<float>(s.windowWidth()), 24) << "the window stays";
}

// --- Editing ---

TEST_F(cameratest, enterandlostfocus) {
    const std::pair<const char*, float sessionstate::*> edits[] = {{"CamX", &sessionstate::cameraX},
                                                                   {"CamZ", &sessionstate::cameraZ},
                                                                   {"TargetY", &sessionstate::targetY},
                                                                   {"FocLenght", &sessionstate::focalLength}};
    room(10, 5, 4);
    for (const auto& [control, field] : edits) {
        SCOPED_TRACE(control);
        const bool focal = std::string_view(control) == "FocLenght";
        const bool zeroentered = focal || std::string_view(control) == "CamZ"; // without a test, as is meant
        // What the field holds after an edit from 0.5, and whether the picture was drawn again.
        const auto edited = [&](auto& act, const char* text, bool redrawn) {
            SessionState.*field = 0.5F;
            picture.lines.clear();
            act(control, text);
            EXPECT_EQ(!picture.lines.empty(), redrawn);
            return SessionState.*field;
        };
        SessionState.autoRedraw = on;
        EXPECT_EQ(edited(cameraentered, " 24m", true), focal ? 0.024F : 24);
        EXPECT_EQ(edited(cameraentered, "0", true), zeroentered ? 0 : 0.5F);
        EXPECT_EQ(edited(cameraleft, "wide", !focal), 0.5F);
        EXPECT_EQ(edited(cameraleft, "-3", !focal), focal ? 0.5F : -3);
        SessionState.autoRedraw = off;
        EXPECT_EQ(edited(cameraentered, "9", false), focal ? 0.009F : 0.5F);
    }
}

// The step up from 16 mm passes over 24, which is meant.
TEST_F(cameratest, spins) {
    const struct {
        const char *spin, *control, *before;
        bool up;
        const char* after;
    } presses[] = {
        {"Spin2", "CamX", "99996.25", true, "100001.3"},
        {"Spin6", "TargetY", "0.5", false, "-4.5"},
        {"Spin7", "TargetZ", "-5", true, ""},
        {"SpinFocal", "FocLenght", "400", true, "400"},
        {"SpinFocal", "FocLenght", "50", false, "35"},
        {"SpinFocal", "FocLenght", "16", true, "35"},
        {"SpinFocal", "FocLenght", "16", false, "16"},
        {"SpinFocal", "FocLenght", "60", true, "84"},
    };
    SessionState.autoRedraw = off; // so that nothing writes the texts but the spin
    for (const auto& p : presses) {
        platform::settext(p.control, p.before);
        cameraspin(p.spin, p.up);
        EXPECT_EQ(platform::gettext(p.control), p.after) << p.spin << " at " << p.before;
    }
}

} // namespace
} // namespace orv
