// Entering a blanking line on the main picture, click by click: BLNadd begins it, a click near its first
// point closes it, Escape throws it away. What is entered meanwhile is drawn reversibly over the picture.
#pragma once

#include "scene/drawsurface.h"

namespace orv {

// "Add Line...": shows the options, then begins a line on a 2D picture. A box refuses the 51st line.
void BLNadd();

// "Options": shows them; the hint in the status bar then tells of them while a line is being entered.
void BLNoptions();

// Whether a line is being entered, and whether its band follows the pointer.
bool lineeditoractive();
bool lineeditorfollows();

// The pointer's events of that time, in window coordinates of the picture. Only a left click sets a point:
// cut to the centimetre below, put on the grid with `snap`, brought onto an axis through the point before
// with `ortho`. A box refuses a 151st point, in the place of which the 150th is then set anew so that the
// line can still be closed, and a point that snaps to a grid whose size reads as 0.
void lineeditorclick(bool left, double x, double y);
void lineeditormove(double x, double y);

// The picture has been drawn anew: pointer and hint are the editor's again, and what follows the pointer is
// put on it.
void lineeditorredrawn(DrawSurface& surface);

// The Escape key: the whole line goes.
void lineeditorescape();

} // namespace orv
