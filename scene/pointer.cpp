// What pressing, dragging and releasing do in the main picture.
#include "scene/pointer.h"

#include "base/arithmetic.h"
#include "base/runtimeerror.h"
#include "maps/blankingeditor.h"
#include "maps/redrawview.h"
#include "platform/platform.h"
#include "response/raypathdisplay.h"
#include "response/responseplot.h"
#include "room/roommodel.h"
#include "scene/camera.h"
#include "scene/modelpoints.h"
#include "scene/scenedrawing.h"
#include "shell/menucommands.h"
#include "shell/sessionstate.h"

#include <cmath>
#include <cstdint>
#include <string>

namespace orv {

namespace {

constexpr double fullturn = 5;   // radians that a drag over the whole picture turns the camera
constexpr double farthest = 1E6; // squared distance of a receiver that can be picked

struct picturedrag {
    bool dragging = false;
    // The camera's start is known, which it is not for a right button that went down in another view.
    bool orbiting = false;
    double startX = 0, startY = 0;
    double lastX = 0, lastY = 0; // the band's end
    double orbitRadius = 0, orbitAzimuth = 0, orbitElevation = 0;
};
picturedrag drag;

// A drawing lets the pointer in while its own pen may be wide.
struct thinpen {
    DrawSurface& picture;
    const double former = picture.drawWidth;
    explicit thinpen(DrawSurface& surface) : picture(surface) { picture.setDrawWidth(1); }
    ~thinpen() { picture.setDrawWidth(former); }
};

bool solidview() {
    return platform::isvisible("Frame1");
}

void drawaxes(DrawSurface& surface) {
    const thinpen thin(surface);
    drawaxes3d(surface);
}

// --- Orbit ---

void startorbit() {
    readcameraposition();
    drag.orbiting = true;
    const sessionstate& s = SessionState;
    const double dx = wide(s.cameraX) - wide(s.targetX), dy = wide(s.cameraY) - wide(s.targetY);
    const double dz = wide(s.cameraZ) - wide(s.targetZ);
    drag.orbitAzimuth = angleof(dy, dx);
    drag.orbitRadius = std::sqrt(dz * dz + dx * dx + dy * dy);
    // Of the height over the whole distance and not over the ground, so that the camera's height jumps a
    // little at the first move; meant.
    drag.orbitElevation = angleof(dz, drag.orbitRadius);
    DrawSurface& picture = platform::picture();
    picture.clear();
    platform::pointer(platform::shape::sizeall);
    if (ischecked("Vaxes"))
        attempt([&] {
            setupcamera();
            drawaxes(picture);
        });
}

void orbitto(double x, double y) {
    sessionstate& s = SessionState;
    DrawSurface& picture = platform::picture();
    picture.clear();
    const double azimuth = drag.orbitAzimuth - fullturn * (x - drag.startX) / picture.windowWidth();
    const double elevation = drag.orbitElevation + fullturn * (y - drag.startY) / picture.windowHeight();
    const double r = drag.orbitRadius;
    s.cameraX = static_cast<float>(wide(s.targetX) + r * std::cos(elevation) * std::cos(azimuth));
    s.cameraY = static_cast<float>(wide(s.targetY) + r * std::cos(elevation) * std::sin(azimuth));
    s.cameraZ = static_cast<float>(wide(s.targetZ) + r * std::sin(elevation));
    picture.setDrawMode(drawmodecopy);
    attempt([&] {
        setupcamera();
        drawaxes(picture);
    });
}

// --- Pan ---

void stretchband(double x, double y) {
    DrawSurface& picture = platform::picture();
    const thinpen thin(picture);
    picture.setDrawStyle(drawstyle::dotted);
    picture.setDrawMode(drawmodexor);
    picture.line(drag.startX, drag.startY, drag.lastX, drag.lastY, QBColor(11));
    picture.line(drag.startX, drag.startY, x, y, QBColor(11));
    picture.setDrawStyle(drawstyle::solid);
    picture.setDrawMode(drawmodecopy);
    drag.lastX = x;
    drag.lastY = y;
}

} // namespace

void picturepress(pointerbuttons pressed, double x, double y) {
    if (lineeditoractive()) return lineeditorclick(pressed.left, x, y);
    drag.startX = drag.lastX = x;
    drag.startY = drag.lastY = y;
    drag.dragging = true;
    if (raypathsshown() && pressed.left) {
        setnearestrec(x, y);
        platform::updatewindow(responsewindowname);
    }
    if (solidview() && pressed.right) startorbit();
}

void picturemove(pointerbuttons held, double x, double y) {
    if (lineeditorfollows()) return lineeditormove(x, y);
    if (!drag.dragging) return;
    if (raypathsshown()) {
        platform::pointer(platform::shape::sizeall);
        platform::statustext(1, std::string(solidview() ? panhint3d : panhint2d));
    }
    if (drag.orbiting && solidview() && held.right)
        orbitto(x, y);
    else
        stretchband(x, y);
}

void picturerelease(pointerbuttons released, double x, double y) {
    if (!drag.dragging || lineeditoractive()) return;
    DrawSurface& picture = platform::picture();
    const double dx = (x - drag.startX) / picture.windowWidth();
    const double dy = (y - drag.startY) / picture.windowHeight();
    drag.dragging = drag.orbiting = false;
    if (!(solidview() && released.right)) {
        SessionState.panX = static_cast<float>(wide(SessionState.panX) - dx);
        SessionState.panY = static_cast<float>(wide(SessionState.panY) - dy);
    }
    picture.setDrawStyle(drawstyle::solid);
    picture.setDrawMode(drawmodecopy);
    picture.clear();
    redrawview(picture);
    if (!raypathsshown()) return;
    platform::pointer(platform::shape::normal);
    platform::statustext(1, std::string(receiverhint)); // behind the drawing, which ends with its own hint
    platform::updatewindow(responsewindowname);
}

void picturedoubleclick() {
    toggleautoredraw();
}

void pictureescape() {
    if (lineeditoractive()) lineeditorescape();
}

void setnearestrec(double x, double y) {
    const bool solid = solidview();
    double best = farthest;
    std::int32_t nearest = 0;
    for (std::int32_t i = 1; i <= RoomModel.receiverCount; ++i) {
        const modelpoint receiver = receiverpoint(i);
        const picturepoint p = solid ? projectpoint(receiver) : inplane(receiver);
        const double distance = (p.x - x) * (p.x - x) + (p.y - y) * (p.y - y);
        if (distance < best) {
            best = distance;
            nearest = i;
        }
    }
    if (nearest > 0) choosereceiver(nearest);
}

double angleof(double y, double x) {
    const double turn = SessionState.halfTurnConstant;
    if (x == 0) return y > 0 ? turn / 2 : -turn / 2;
    double angle = std::atan(y / x);
    if (x < 0) angle -= turn;
    return angle < -turn ? angle + 2 * turn : angle;
}

} // namespace orv
