// The camera, its two windows, and the editing of its fields.
#include "scene/camera.h"

#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "tests/testsupport.h"

#include <cmath>
#include <random>
#include <string>
#include <vector>

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
        RoomModel.roomMinX = RoomModel.roomMinY = RoomModel.roomMinZ = 0;
        RoomModel.roomMaxX = width;
        RoomModel.roomMaxY = depth;
        RoomModel.roomMaxZ = height;
    }

    void expectwindow(double left, double top, double right, double bottom) {
        const DrawSurface& s = picture.surface;
        EXPECT_NEAR(s.windowLeft(), left, 1E-5);
        EXPECT_NEAR(s.windowTop(), top, 1E-5);
        EXPECT_NEAR(s.windowLeft() + s.windowWidth(), right, 1E-5);
        EXPECT_NEAR(s.windowTop() + s.windowHeight(), bottom, 1E-5);
    }
};

bool divisionfails() {
    try {
        setupcamera();
    } catch (const runtimeerror& error) {
        return error.kind == errorkind::divisionbyzero;
    }
    return false;
}

TEST_F(cameratest, lookingalongx) {
    place(0, 0, 0, 10, 0, 0);
    setupcamera();
    const viewcamera& c = ViewCamera;
    EXPECT_EQ(c.planeOriginX, 5);
    EXPECT_EQ(c.planeOffset, -5);
    EXPECT_EQ(c.axisUY, -1);
    EXPECT_EQ(c.axisVZ, 1);
    double u, v;
    projectpoint(10, 5, 0, u, v);
    EXPECT_DOUBLE_EQ(u, -2.5);
    EXPECT_DOUBLE_EQ(v, 0);
    projectpoint(20, 0, 4, u, v);
    EXPECT_DOUBLE_EQ(u, 0);
    EXPECT_DOUBLE_EQ(v, 1);

    projectpoint(-1, 3, 4, u, v);
    EXPECT_EQ(u, -12345);
    EXPECT_EQ(v, 0);
    EXPECT_EQ(scripted::countcalls("beep"), 0U);
    u = v = 1;
    projectpoint(0, 7, 2, u, v);
    EXPECT_EQ(u, 0);
    EXPECT_EQ(v, 0);
    EXPECT_EQ(scripted::countcalls("beep"), 1U);
}

// By similar triangles, in a frame of view made without a picture plane.
TEST_F(cameratest, projectsaspinhole) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> metres(-40, 40), focal(0.016F, 0.4F);
    for (int i = 0; i < 300; ++i) {
        place(metres(random), metres(random), metres(random), metres(random), metres(random), metres(random));
        const sessionstate& s = SessionState;
        SessionState.focalLength = focal(random);
        setupcamera();
        const double n[3] = {s.targetX - s.cameraX, s.targetY - s.cameraY, s.targetZ - s.cameraZ};
        const double far = std::hypot(n[0], n[1], n[2]), level = std::hypot(n[0], n[1]);
        if (level < 1) continue; // nearly upright, where the right-hand direction is ill-defined
        const double ahead = 100.0 * static_cast<double>(s.focalLength);
        if (std::fabs(far - ahead) < 0.1) continue;
        // The plane's centre beyond the target turns the picture.
        const double turn = ahead > far ? -1 : 1;

        const double d[3] = {metres(random), metres(random), metres(random)};
        const double depth = (d[0] * n[0] + d[1] * n[1] + d[2] * n[2]) / far;
        double u, v;
        projectpoint(s.cameraX + d[0], s.cameraY + d[1], s.cameraZ + d[2], u, v);
        if (depth < -0.01) {
            EXPECT_EQ(u, behindcamera);
        } else if (depth > 1) {
            const double right = (d[0] * n[1] - d[1] * n[0]) / level;
            const double up = (d[2] * level * level - (d[0] * n[0] + d[1] * n[1]) * n[2]) / (level * far);
            // The camera's single-precision axes are good to 1E-7 of a picture that is `spread` wide; near
            // the target the plane's centre loses digits.
            const double spread = ahead * std::hypot(d[0], d[1], d[2]) / depth;
            const double tolerance = 1E-5 * spread * (1 + far / std::fabs(far - ahead));
            EXPECT_NEAR(u, turn * ahead * right / depth, tolerance);
            EXPECT_NEAR(v, turn * ahead * up / depth, tolerance);
        }
    }
}

TEST_F(cameratest, turnsoverwhentooclose) {
    place(0, 0, 0, 4, 0, 0); // the plane stands at 5 m
    setupcamera();
    EXPECT_EQ(ViewCamera.axisUY, 1);
    EXPECT_EQ(ViewCamera.axisVZ, -1);
}

TEST_F(cameratest, divisionbyzerokeepsthederivedfields) {
    place(0, 0, 0, 10, 0, 0);
    setupcamera();
    const float cases[][6] = {{3, 4, 9, 3, 4, 1}, {3, 4, 1, 3, 4, 9}, {1, 2, 3, 1, 2, 3}, {0, 0, 0, 5, 0, 0}};
    for (const auto& c : cases) {
        place(c[0], c[1], c[2], c[3], c[4], c[5]);
        EXPECT_TRUE(divisionfails());
        EXPECT_EQ(ViewCamera.planeOriginX, 5);
        EXPECT_EQ(ViewCamera.axisUY, -1);
        EXPECT_EQ(ViewCamera.axisVZ, 1);
        EXPECT_EQ(lenientnumber(platform::gettext("TargetX")), static_cast<double>(c[3])); // texts come first
    }
}

TEST_F(cameratest, writesthetexts) {
    place(-10, -15.26F, 0, 0.04F, 1234.5F, -0.04F);
    SessionState.focalLength = 0.0355F;
    setupcamera();
    const std::pair<const char*, const char*> texts[] = {
        {"FocLenght", "35.5"}, {"CamX", "-10.0"},     {"CamY", "-15.3"},  {"CamZ", "0.0"},
        {"TargetX", "0.0"},    {"TargetY", "1234.5"}, {"TargetZ", "-0.0"}};
    for (const auto& [control, text] : texts) EXPECT_EQ(platform::gettext(control), text) << control;
    SessionState.focalLength = 0.05F;
    setupcamera();
    EXPECT_EQ(platform::gettext("FocLenght"), "50");
}

TEST_F(cameratest, planethroughpoints) {
    double a, b, c, d;
    planefrompoints({1, 0, 0}, {0, 2, 0}, {0, 0, 3}, a, b, c, d); // 6x + 3y + 2z = 6
    EXPECT_EQ(a / -6, 1);
    EXPECT_EQ(b / -3, 1);
    EXPECT_EQ(c / -2, 1);
    EXPECT_EQ(d / 6, 1);
}

TEST_F(cameratest, windowof3dview) {
    DrawSurface& s = picture.surface;
    s.resize(750, 500, 1);
    scale3dview(s);
    expectwindow(-1.8, 1.2, 1.8, -1.2);
    s.resize(1500, 500, 1);
    scale3dview(s);
    expectwindow(-3.6, 1.2, 3.6, -1.2);
    s.resize(500, 1000, 1);
    scale3dview(s);
    expectwindow(-1.8, 3.6, 1.8, -3.6);
    s.resize(750, 500, 1);
    SessionState.panX = 0.5F;
    SessionState.panY = -0.25F;
    scale3dview(s);
    expectwindow(0, 1.8, 3.6, -0.6);
}

TEST_F(cameratest, windowof2dview) {
    DrawSurface& s = picture.surface; // 800 x 500
    room(10, 5, 4);
    scale2dview(s);
    expectwindow(-1, 6.25, 11, -1.25);
    SessionState.viewPlane = planechoice::YZ;
    scale2dview(s); // as high as 4 m with their margin
    expectwindow(2.5 - 3.84, 4.4, 2.5 + 3.84, -0.4);
    SessionState.viewPlane = planechoice::XZ;
    scale2dview(s);
    expectwindow(-1, 2 + 3.75, 11, 2 - 3.75);

    SessionState.viewPlane = planechoice::XY;
    SessionState.focalLength = 0.1F; // the middle half
    scale2dview(s);
    expectwindow(2, 2.5 + 1.875, 8, 2.5 - 1.875);
    SessionState.panX = -0.5F;
    SessionState.panY = 1;
    scale2dview(s);
    expectwindow(-1, 2.5 + 1.875 - 3.75, 5, 2.5 - 1.875 - 3.75);
}

TEST_F(cameratest, windowofflatrooms) {
    DrawSurface& s = picture.surface;
    SessionState.viewPlane = planechoice::XZ;
    room(10, 5, 0);
    scale2dview(s);
    // Half as wide as the surface asks, so the width doubles too.
    expectwindow(5 - 12, 7.5, 5 + 12, -7.5);

    s.setWindow(0, 1, 1, 0);
    const auto fails = [&] {
        try {
            scale2dview(s);
        } catch (const runtimeerror& error) {
            return error.kind == errorkind::divisionbyzero;
        }
        return false;
    };
    room(0, 5, 4);
    EXPECT_TRUE(fails());
    room(0, 5, 0);
    EXPECT_TRUE(fails());
    room(10, 5, 4);
    SessionState.focalLength = 0;
    EXPECT_TRUE(fails());
    expectwindow(0, 1, 1, 0);

    SessionState.focalLength = 0.05F;
    s.resize(800, 10, 1); // not laid out yet
    scale2dview(s);
    expectwindow(0, 1, 1, 0);
}

// --- Editing ---

TEST_F(cameratest, enterandlostfocus) {
    struct edit {
        const char* control;
        float sessionstate::*field;
    };
    const edit edits[] = {{"CamX", &sessionstate::cameraX},    {"CamY", &sessionstate::cameraY},
                          {"CamZ", &sessionstate::cameraZ},    {"TargetX", &sessionstate::targetX},
                          {"TargetY", &sessionstate::targetY}, {"TargetZ", &sessionstate::targetZ}};
    room(10, 5, 4);
    for (const auto& [control, field] : edits) {
        SCOPED_TRACE(control);
        float& value = SessionState.*field;
        const auto redraws = [&](auto&& act) {
            picture.lines.clear();
            act();
            return !picture.lines.empty() && picture.lines[0] == "clear FFFFFF";
        };
        value = 7;
        SessionState.autoRedraw = on;
        EXPECT_TRUE(redraws([&] { cameraentered(control, " 2.5m"); }));
        EXPECT_EQ(value, 2.5F);
        for (const char* nothing : {"0", "", "wide"}) {
            value = 7;
            EXPECT_TRUE(redraws([&] { cameraentered(control, nothing); }));
            EXPECT_EQ(value, std::string_view(control) == "CamZ" ? 0 : 7) << nothing;
            value = 7;
            EXPECT_TRUE(redraws([&] { cameraleft(control, nothing); }));
            EXPECT_EQ(value, 7) << nothing;
        }
        EXPECT_TRUE(redraws([&] { cameraleft(control, "-3"); }));
        EXPECT_EQ(value, -3);

        SessionState.autoRedraw = off;
        EXPECT_FALSE(redraws([&] { cameraentered(control, "9"); }));
        EXPECT_EQ(value, -3);
        EXPECT_FALSE(redraws([&] { cameraleft(control, "9"); }));
        EXPECT_EQ(value, 9);
    }
}

TEST_F(cameratest, focallengthfield) {
    room(10, 5, 4);
    cameraentered("FocLenght", "35");
    EXPECT_EQ(SessionState.focalLength, 0.035F);
    EXPECT_FALSE(picture.lines.empty());
    picture.lines.clear();
    SessionState.autoRedraw = off;
    cameraentered("FocLenght", "24");
    EXPECT_EQ(SessionState.focalLength, 0.024F);
    cameraleft("FocLenght", "80");
    EXPECT_EQ(SessionState.focalLength, 0.024F);
    cameraentered("FocLenght", "none");
    EXPECT_EQ(SessionState.focalLength, 0); // no test here
    EXPECT_TRUE(picture.lines.empty());
}

TEST_F(cameratest, spins) {
    struct press {
        const char *spin, *control, *before;
        bool up;
        const char* after;
    };
    const press presses[] = {
        {"Spin2", "CamX", "-10", true, "-5"},
        {"Spin2", "CamX", "99996.25", true, "100001.3"},
        {"Spin2", "CamX", "-10", false, "-15"},
        {"Spin3", "CamY", "1.25", true, "6.3"},
        {"Spin4", "CamZ", "8", false, "3"},
        {"Spin5", "TargetX", "words", true, "5"},
        {"Spin6", "TargetY", "0.5", false, "-4.5"},
        {"Spin7", "TargetZ", "-5", true, ""},
        {"SpinFocal", "FocLenght", "400", true, "400"},
        {"SpinFocal", "FocLenght", "400", false, "300"},
        {"SpinFocal", "FocLenght", "50", true, "80"},
        {"SpinFocal", "FocLenght", "50", false, "35"},
        {"SpinFocal", "FocLenght", "16", true, "35"},
        {"SpinFocal", "FocLenght", "16", false, "16"},
        {"SpinFocal", "FocLenght", "24", true, "35"},
        {"SpinFocal", "FocLenght", "24", false, "16"},
        {"SpinFocal", "FocLenght", "60", true, "84"},
        {"SpinFocal", "FocLenght", "60", false, "42"},
        {"SpinFocal", "FocLenght", "1", false, ""},
    };
    SessionState.autoRedraw = off; // so that nothing writes the texts but the spin
    for (const press& p : presses) {
        platform::settext(p.control, p.before);
        cameraspin(p.spin, p.up);
        EXPECT_EQ(platform::gettext(p.control), p.after) << p.spin << " at " << p.before;
    }

    // As if Enter had been pressed.
    room(10, 5, 4);
    SessionState.autoRedraw = on;
    SessionState.cameraX = 1;
    SessionState.cameraZ = 1;
    platform::settext("CamX", "20");
    cameraspin("Spin2", true);
    EXPECT_EQ(SessionState.cameraX, 25);
    platform::settext("CamX", "5");
    cameraspin("Spin2", false); // writes an empty text, and a 0 is not taken
    EXPECT_EQ(SessionState.cameraX, 25);
    platform::settext("CamZ", "5");
    cameraspin("Spin4", false); // but here it is
    EXPECT_EQ(SessionState.cameraZ, 0);
    platform::settext("FocLenght", "50");
    cameraspin("SpinFocal", true);
    EXPECT_EQ(SessionState.focalLength, 0.08F);
}

TEST_F(cameratest, planesandredisplay) {
    room(10, 5, 4);
    chooseplane(planechoice::YZ);
    EXPECT_EQ(SessionState.viewPlane, planechoice::YZ);
    EXPECT_EQ(picture.lines[0], "clear FFFFFF");
    expectwindow(2.5 - 3.84, 4.4, 2.5 + 3.84, -0.4);
    picture.lines.clear();
    SessionState.autoRedraw = off;
    redisplaypressed(); // whatever autoRedraw says
    EXPECT_EQ(picture.lines[0], "clear FFFFFF");
}

} // namespace
} // namespace orv
