// The camera's derived fields, the windows of the two kinds of view, and the editing of the camera.
#include "scene/camera.h"

#include "base/arithmetic.h"
#include "base/formatpattern.h"
#include "base/numbertext.h"
#include "base/runtimeerror.h"
#include "maps/redrawview.h"
#include "platform/platform.h"
#include "room/roommodel.h"
#include "scene/drawingturn.h"

#include <array>
#include <cmath>

namespace orv {

viewcamera ViewCamera;

namespace {

constexpr double filmwidth = 3.6, filmheight = 2.4; // m on the picture plane: 36 x 24 mm, a hundred times
constexpr double enlargement = 100;
constexpr double normalfocal = 0.05; // m, the focal length at which a 2D view shows the room with its margin
constexpr double margin = 1.2;       // of the 2D window to the room's box
constexpr double flatroom = 0.001;   // m, a 2D window lower than this shows a room edge-on
constexpr double laidout = 10;       // pixels of height above which a surface is taken as laid out
constexpr double spinstep = 5;       // m
constexpr double smallestlength = 1E-6; // in the place of 0 before the axis to the right is divided by it

constexpr std::string_view positionpattern = "###0.0", focalpattern = "#####.#", spinpattern = "####.#";

// The fields of the camera window, with the value behind each and its spin button. Focal length apart.
struct camerafield {
    std::string_view control, spin;
    float sessionstate::*value;
    bool zeroentered;           // Enter stores a 0 too; meant for CamZ alone
    std::string_view uppattern; // of the spin's upper half; the lower one has spinpattern
};
constexpr std::array<camerafield, 6> camerafields = {{
    {"CamX", "Spin2", &sessionstate::cameraX, false, "#####.#"}, // the wider pattern belongs to this button
    {"CamY", "Spin3", &sessionstate::cameraY, false, spinpattern},
    {"CamZ", "Spin4", &sessionstate::cameraZ, true, spinpattern},
    {"TargetX", "Spin5", &sessionstate::targetX, false, spinpattern},
    {"TargetY", "Spin6", &sessionstate::targetY, false, spinpattern},
    {"TargetZ", "Spin7", &sessionstate::targetZ, false, spinpattern},
}};
constexpr std::string_view focalcontrol = "FocLenght", focalspin = "SpinFocal";

// Focal lengths in mm and their neighbours. The step up from 16 passes over 24, and is meant to.
struct focalstep {
    double now, down, up;
};
constexpr std::array<focalstep, 10> focalsteps = {{{400, 300, 400},
                                                   {300, 200, 400},
                                                   {200, 150, 300},
                                                   {150, 100, 200},
                                                   {100, 80, 150},
                                                   {80, 50, 100},
                                                   {50, 35, 80},
                                                   {35, 24, 50},
                                                   {24, 16, 35},
                                                   {16, 16, 35}}};

double length(double x, double y, double z) {
    return std::sqrt(x * x + y * y + z * z);
}

void writecamera() {
    const sessionstate& s = SessionState;
    platform::settext(std::string(focalcontrol),
                      formatnumber(single(wide(s.focalLength) * 1000), focalpattern));
    for (const camerafield& field : camerafields)
        platform::settext(std::string(field.control), formatnumber(s.*field.value, positionpattern));
}

void redrawpicture() {
    DrawSurface& picture = platform::picture();
    picture.clear();
    redrawview(picture);
}

void redrawwhenauto() {
    if (SessionState.autoRedraw != off) redrawpicture();
}

// The number of a field's text as single precision. Raises overflow with the field and what stands there.
float fieldnumber(std::string_view control, const std::string& text, double divisor = 1) {
    try {
        return single(lenientnumber(text) / divisor);
    } catch (const runtimeerror& error) {
        throw runtimeerror{error.kind, std::string(control) + ": the number " + text + " is too large."};
    }
}

// Stores the number of a field's text; a 0, which is also what words and an empty field read as, only where
// `zero` allows it.
void storefield(const camerafield& field, const std::string& text, bool zero) {
    const float value = fieldnumber(field.control, text);
    if (value != 0 || zero) SessionState.*field.value = value;
}

const camerafield* fieldof(std::string_view control) {
    for (const camerafield& field : camerafields)
        if (field.control == control) return &field;
    return nullptr;
}

// Moves a window by the pan. y grows upwards, and a positive pan moves the window down.
void pan(double& left, double& top, double& right, double& bottom) {
    if (SessionState.panX != 0) {
        const double by = (right - left) * wide(SessionState.panX);
        left += by;
        right += by;
    }
    if (SessionState.panY != 0) {
        const double by = (top - bottom) * wide(SessionState.panY);
        top -= by;
        bottom -= by;
    }
}

} // namespace

void setupcamera() {
    writecamera();
    ViewCamera = derivedcamera();
}

viewcamera derivedcamera() {
    const sessionstate& s = SessionState;
    const double x = wide(s.cameraX), y = wide(s.cameraY), z = wide(s.cameraZ);
    const double tox = wide(s.targetX) - x, toy = wide(s.targetY) - y, toz = wide(s.targetZ) - z;
    const double distance = length(tox, toy, toz);
    const double ahead = wide(s.focalLength) * enlargement;

    viewcamera c;
    c.planeOriginX = single(x + quotient(tox * ahead, distance));
    c.planeOriginY = single(y + quotient(toy * ahead, distance));
    c.planeOriginZ = single(z + quotient(toz * ahead, distance));
    c.viewNormalX = single(quotient(tox, distance));
    c.viewNormalY = single(quotient(toy, distance));
    c.viewNormalZ = single(quotient(toz, distance));
    const double nx = wide(c.viewNormalX), ny = wide(c.viewNormalY), nz = wide(c.viewNormalZ);
    const double ox = wide(c.planeOriginX), oy = wide(c.planeOriginY), oz = wide(c.planeOriginZ);
    c.planeOffset = single(-(nx * ox + ny * oy + nz * oz));

    // From the plane's centre to the target, not along the view: a camera nearer to the target than the plane
    // turns the picture upside down, which is meant.
    const planeequation upright =
        planefrompoints({ox, oy, oz}, {wide(s.targetX), wide(s.targetY), wide(s.targetZ)}, {ox, oy, oz + 1});
    double u = length(upright.a, upright.b, upright.c);
    if (u == 0) u = smallestlength;
    c.axisUX = single(-upright.a / u);
    c.axisUY = single(-upright.b / u);
    c.axisUZ = single(-upright.c / u);
    const double ux = wide(c.axisUX), uy = wide(c.axisUY), uz = wide(c.axisUZ);
    const double vx = uy * nz - uz * ny, vy = uz * nx - ux * nz, vz = ux * ny - uy * nx;
    const double v = length(vx, vy, vz);
    c.axisVX = single(quotient(vx, v));
    c.axisVY = single(quotient(vy, v));
    c.axisVZ = single(quotient(vz, v));
    return c;
}

picturepoint inplane(const modelpoint& point) {
    switch (SessionState.viewPlane) {
    case planechoice::YZ:
        return {point.y, point.z};
    case planechoice::XZ:
        return {point.x, point.z};
    default:
        return {point.x, point.y};
    }
}

modelpoint fromplane(const picturepoint& point, double third, planechoice plane) {
    switch (plane) {
    case planechoice::YZ:
        return {third, point.x, point.y};
    case planechoice::XZ:
        return {point.x, third, point.y};
    default:
        return {point.x, point.y, third};
    }
}

planeequation planefrompoints(const modelpoint& p1, const modelpoint& p2, const modelpoint& p3) {
    const double px = p3.x - p1.x, py = p3.y - p1.y, pz = p3.z - p1.z;
    const double qx = p2.x - p1.x, qy = p2.y - p1.y, qz = p2.z - p1.z;
    const double a = py * qz - pz * qy, b = pz * qx - px * qz, c = px * qy - py * qx;
    return {a, b, c, -(a * p1.x + b * p1.y + c * p1.z)};
}

void scale3dview(DrawSurface& surface) {
    const double shape = surface.width() / surface.height() / (filmwidth / filmheight);
    const double halfwidth = filmwidth / 2 * (shape > 1 ? shape : 1);
    const double halfheight = filmheight / 2 / (shape > 1 ? 1 : shape);
    double left = -halfwidth, right = halfwidth, top = halfheight, bottom = -halfheight;
    pan(left, top, right, bottom);
    surface.setWindow(left, top, right, bottom);
}

void scale2dview(DrawSurface& surface) {
    const roommodel& r = RoomModel;
    const bool across = SessionState.viewPlane == planechoice::YZ;   // y and not x runs to the right
    const bool standing = SessionState.viewPlane != planechoice::XY; // z and not y runs upwards
    const double hi1 = wide(across ? r.roomMaxY : r.roomMaxX), lo1 = wide(across ? r.roomMinY : r.roomMinX);
    const double hi2 = wide(standing ? r.roomMaxZ : r.roomMaxY);
    const double lo2 = wide(standing ? r.roomMinZ : r.roomMinY);
    const double zoom = wide(SessionState.focalLength) / normalfocal;
    const double c1 = (hi1 + lo1) / 2, c2 = (hi2 + lo2) / 2;
    const auto reach = [zoom](double side, double centre) {
        return quotient(margin * (side - centre), zoom);
    };
    double left = c1 + reach(lo1, c1), right = c1 + reach(hi1, c1);
    double bottom = c2 + reach(lo2, c2), top = c2 + reach(hi2, c2);

    const double surfaceaspect = surface.width() / surface.height();
    double h = top - bottom;
    if (std::fabs(h) < flatroom) {
        // Twice as high as the surface's shape asks, which is meant.
        bottom = c2 - (right - left) / surfaceaspect;
        top = c2 + (right - left) / surfaceaspect;
        h = top - bottom;
    }
    const double worldaspect = quotient(right - left, h);
    if (worldaspect > surfaceaspect) {
        bottom = c2 + reach(lo2, c2) * worldaspect / surfaceaspect;
        top = c2 + reach(hi2, c2) * worldaspect / surfaceaspect;
    } else {
        left = c1 + quotient(surfaceaspect * reach(lo1, c1), worldaspect);
        right = c1 + quotient(surfaceaspect * reach(hi1, c1), worldaspect);
    }
    pan(left, top, right, bottom);
    if (surface.height() > laidout) surface.setWindow(left, top, right, bottom);
}

void cameraentered(std::string_view control, const std::string& text) {
    if (control == focalcontrol) {
        SessionState.focalLength = fieldnumber(control, text, 1000);
        redrawwhenauto();
        return;
    }
    const camerafield* field = fieldof(control);
    if (!field || SessionState.autoRedraw == off) return;
    storefield(*field, text, field->zeroentered);
    redrawpicture();
}

void cameraleft(std::string_view control, const std::string& text) {
    const camerafield* field = fieldof(control);
    if (!field) return; // the focal length acts on Enter alone
    storefield(*field, text, false);
    redrawwhenauto();
}

void readcameraposition() {
    for (const camerafield& field : camerafields)
        if (field.control.starts_with("Cam"))
            storefield(field, platform::gettext(std::string(field.control)), true);
}

void cameraspin(std::string_view spin, bool up) {
    if (drawingruns()) return; // Enter is not taken now, and the field must not show what nobody stored
    const auto act = [](std::string_view control, double value, std::string_view pattern) {
        const std::string text = formatnumber(value, pattern);
        platform::settext(std::string(control), text);
        cameraentered(control, text);
    };
    if (spin == focalspin) {
        const double now = lenientnumber(platform::gettext(std::string(focalcontrol)));
        for (const focalstep& step : focalsteps)
            if (step.now == now) return act(focalcontrol, up ? step.up : step.down, spinpattern);
        return act(focalcontrol, Int(up ? now * std::sqrt(2.0) : now * std::sqrt(2.0) / 2), spinpattern);
    }
    for (const camerafield& field : camerafields) {
        if (field.spin != spin) continue;
        const double now = lenientnumber(platform::gettext(std::string(field.control)));
        // A step that ends at 0 is not stored (but by CamZ), as any 0 that is entered; meant.
        return act(field.control, up ? now + spinstep : now - spinstep, up ? field.uppattern : spinpattern);
    }
}

void setplane(planechoice plane) {
    if (SessionState.viewPlane != plane) SessionState.gridReady = SessionState.contourReady = 0;
    SessionState.viewPlane = plane;
}

void chooseplane(planechoice plane) {
    setplane(plane);
    redrawpicture();
}

void redisplaypressed() {
    redrawpicture();
}

void projectionplanebeep() {
    platform::beep();
}

} // namespace orv
