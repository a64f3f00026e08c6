// The one camera of the main window, and the two rules by which model coordinates become picture coordinates.
//
// The 3D view is a pinhole camera on a 36 x 24 mm film frame enlarged a hundred times: a point is brought
// onto a picture plane 100 x focal length in front of the camera, and its place on the plane, in metres, is
// its place in the picture. The 2D views take two model coordinates as they are, in a window fitted round the
// room. Nothing is hidden and nothing is cut off here.
#pragma once

#include "base/arithmetic.h"
#include "scene/drawsurface.h"
#include "shell/sessionstate.h"

#include <string>
#include <string_view>

namespace orv {

// What setupcamera derives from the camera fields of SessionState: valid from its last success on, and not
// to be taken as stable between drawings, since maps use planeOriginX and planeOriginY as scratch.
struct viewcamera {
    float planeOriginX, planeOriginY, planeOriginZ; // centre of the picture plane, m
    float viewNormalX, viewNormalY, viewNormalZ;    // unit vector from the camera towards the target
    float planeOffset;                              // viewNormal . p + planeOffset = 0 on the plane
    float axisUX, axisUY, axisUZ;                   // unit vector of the picture's right-hand direction
    float axisVX, axisVY, axisVZ;                   // unit vector of the picture's upward direction
};

extern viewcamera ViewCamera;

// The u of a point behind the camera.
constexpr double behindcamera = -12345;

// Writes the six position texts and the focal text, then derives ViewCamera. Raises divisionbyzero when the
// camera stands on the target, exactly above or below it, or when the picture plane goes through the target;
// ViewCamera is then as it was, but the texts are written.
void setupcamera();

// What setupcamera derives, without a change to anything. Raises divisionbyzero alike.
viewcamera derivedcamera();

// A point of the model, m, and one of the picture or of the plane of the 2D view, in that view's two axes.
struct modelpoint {
    double x, y, z;
};
struct picturepoint {
    double x, y;
};

// The place of a model point in the 3D picture (m on the picture plane), computed in double precision from
// the single-precision camera. (0, 0) with a beep for a point in the camera's own plane, (-12345, 0) for one
// behind the camera; nobody tests for either. Raises nothing.
picturepoint projectpoint(const modelpoint& point);

// The two coordinates of a point that the present 2D view shows: x and y, y and z, or x and z.
picturepoint inplane(const modelpoint& point);

// The point of the model whose two coordinates in a 2D view, the present one, are those of `point`, the third
// being `third`.
modelpoint fromplane(const picturepoint& point, double third, planechoice plane = SessionState.viewPlane);

// The plane a x + b y + c z + d = 0 through three points; (a, b, c) = (p3 - p1) x (p2 - p1), not normalised.
struct planeequation {
    double a, b, c, d;
};
planeequation planefrompoints(const modelpoint& p1, const modelpoint& p2, const modelpoint& p3);

// Sets the window of `surface` for the 3D view: the film frame, widened in the direction that the surface's
// shape asks, moved by the pan.
void scale3dview(DrawSurface& surface);

// Sets the window of `surface` for the present 2D view: the room's box with a fifth on all sides, zoomed by
// focal length / 50 mm, moved by the pan. A surface of 10 pixels height or less is not laid out yet and
// keeps its window. Raises divisionbyzero for a room without extent and for a focal length of 0.
void scale2dview(DrawSurface& surface);

// --- The camera controls of the main window. `control` is FocLenght, CamX, CamY, CamZ, TargetX, TargetY or
// TargetZ. All raise overflow for a number that single precision does not hold. ---

// Enter in a field whose text is `text`.
void cameraentered(std::string_view control, const std::string& text);

// A field has lost the focus.
void cameraleft(std::string_view control, const std::string& text);

// Takes what CamX, CamY and CamZ show now, a 0 too.
void readcameraposition();

// A spin button, SpinFocal or Spin2 to Spin7: writes the next number into its field and acts as Enter there.
void cameraspin(std::string_view spin, bool up);

// Makes a plane the one of the 2D views; maps of another are out of date.
void setplane(planechoice plane);

// A click on XY, YZ or XZ.
void chooseplane(planechoice plane);

// The Redisplay button.
void redisplaypressed();

// --- Implementation of the most-called routine of the scene ---

void projectionplanebeep(); // the beep of a point in the camera's plane

inline picturepoint projectpoint(const modelpoint& point) {
    const viewcamera& c = ViewCamera;
    const double cx = wide(SessionState.cameraX), cy = wide(SessionState.cameraY);
    const double cz = wide(SessionState.cameraZ);
    const double nx = wide(c.viewNormalX), ny = wide(c.viewNormalY), nz = wide(c.viewNormalZ);
    const double dx = point.x - cx, dy = point.y - cy, dz = point.z - cz;
    const double den = nx * dx + ny * dy + nz * dz;
    if (den == 0) [[unlikely]] {
        projectionplanebeep();
        return {0, 0};
    }
    const double s = (nx * cx + ny * cy + nz * cz + wide(c.planeOffset)) / den;
    if (s > 0) return {behindcamera, 0};
    const double qx = cx - dx * s - wide(c.planeOriginX);
    const double qy = cy - dy * s - wide(c.planeOriginY);
    const double qz = cz - dz * s - wide(c.planeOriginZ);
    return {wide(c.axisUX) * qx + wide(c.axisUY) * qy + wide(c.axisUZ) * qz,
            wide(c.axisVX) * qx + wide(c.axisVY) * qy + wide(c.axisVZ) * qz};
}

} // namespace orv
