// Contour maps: the lines of the contour file, each in the colour of its level, with the scene. They draw
// within a drawing that has its turn (scene/drawingturn.h).
#pragma once

#include "scene/drawsurface.h"

#include <array>
#include <cstdint>

namespace orv {

// The colours of lines: index c + 8 for the level index c of 0..255, index 0 for lines of no known level.
using contourpalette = std::array<std::int32_t, 264>;

// The palette of the chosen scheme. The lines of "White-Blue" and "White-Black" have one colour, which is
// readable on white.
contourpalette makecontourpalette();

// The level 0..15 whose lines have that colour number, -1 for another number. Raises subscript outside
// 0..255.
std::int32_t contourLevelOfColour(std::int32_t colourNumber);

// Draw the map in the present 2D view under the scene, or in the camera's view in the plane at
// mapThirdCoordinate over it (white before it with `clearfirst`), with the colour scale where the lines have
// more than one colour. Grid and contour file are computed first where gridReady and contourReady are 0, and
// the file is read anew each time. Show the wait pointer and the share of the file that is read; leave
// mapKind "Normal" and the scene's hint. In 3D the pen width stays 2.
//
// Return whether the view can be drawn. Raise divisionbyzero when minLevel equals maxLevel and what
// surfergrid, surfertopo and the reading of a file raise; lines drawn before stay.
bool drawcontour2d(DrawSurface& surface);
bool drawcontour3d(DrawSurface& surface, bool clearfirst);

} // namespace orv
