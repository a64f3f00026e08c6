// Mosaic maps: the field of the chosen parameter as Nx x Ny coloured cells, one exact colour to each, with
// the colour scale and the scene on top. They draw within a drawing that has its turn (scene/drawingturn.h).
#pragma once

#include "scene/drawsurface.h"

namespace orv {

// Draw the map in the present 2D view, or in the camera's view as thick lines in the plane at
// mapThirdCoordinate, over the scene, which is drawn first (white before it with `clearfirst`). Take the
// values from MapGrid with useSurfer, computing it where gridReady is 0, and from all receivers otherwise.
// With autorange they choose the levels first. Show the wait pointer, "Dithering..." and the share of the
// columns; yield after each and end the columns when drawAbort is set then. Leave mapKind "Normal" and the
// scene's hint.
//
// Return whether the view can be drawn. Raise divisionbyzero, before anything of the map is on the surface,
// without receivers, for a gridded rectangle without width or height, and when minLevel equals maxLevel; what
// parametervalue raises; subscript for a grid beyond MapGrid.
bool drawdither2d(DrawSurface& surface);
bool drawdither3d(DrawSurface& surface, bool clearfirst);

} // namespace orv
