// Pointer and keys in the main picture: panning with the left button, orbiting the camera with the right one
// in 3D, picking a receiver while ray paths are shown. While a blanking line is entered, all goes to its
// editor (maps/blankingeditor.h).
//
// Positions are window coordinates of the picture.
#pragma once

#include <string_view>

namespace orv {

constexpr std::string_view receiverhint = "Click near to a receiver for selecting its response...";

// The button that an event is about; at a move the one that is held.
struct pointerbuttons {
    bool left = false, right = false;
};

void picturepress(pointerbuttons pressed, double x, double y);
void picturemove(pointerbuttons held, double x, double y);

// The end of a drag, which redraws the picture: after a pan moved by the drag's share of the window.
void picturerelease(pointerbuttons released, double x, double y);

// Turns automatic redrawing on or off.
void picturedoubleclick();

// The Escape key, which is the editor's.
void pictureescape();

// Chooses the receiver nearest to a position in the impulse response window, the first of several; nothing
// without one within 1000 units.
void setnearestrec(double x, double y);

// The angle of a direction, an arc tangent over the quadrants with half of pi in the place of pi
// (SessionState.halfTurnConstant), so that an orbit which starts on the side of smaller x jumps at its first
// move; meant.
double angleof(double y, double x);

} // namespace orv
