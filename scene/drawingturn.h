// Whose turn it is to draw on a surface. A drawing yields to the window system now and then, and the user can
// ask for another picture meanwhile. That one is not nested into the running drawing: the running one is told
// to end early (drawAbort), and the last one asked for is then drawn from a cleared surface.
#pragma once

#include "scene/drawsurface.h"

namespace orv {

// Draws one picture whole, after making the surface white when `clearfirst` is set. Returns whether there was
// anything that can be drawn.
using drawing = bool (*)(DrawSurface& surface, bool clearfirst);

// Draws, with the wait pointer's end and the picture kept for later; a drawing that turns out to be
// impossible gives the surface its last finished picture back. While another drawing has the surface, this
// one waits and the call returns at once. What the drawing raises passes on.
void taketurn(DrawSurface& surface, bool clearfirst, drawing wanted);

// Whether a drawing runs now: any, or one on this surface.
bool drawingruns();
bool drawingruns(const DrawSurface& surface);

} // namespace orv
