// The scene as a wire frame with markers and labels: the 2D views and the 3D view.
#pragma once

#include "scene/drawsurface.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace orv {

// What the status bar says of the pointer in the two kinds of view.
constexpr std::string_view panhint2d = "Left Click and drag for panning the image...";
constexpr std::string_view panhint3d =
    "Left Click and drag for panning the image, Right Click and drag for rotation...";

// Draw the whole scene, in their turn (scene/drawingturn.h); with `clearfirst` the surface is made white
// first. Show the wait pointer meanwhile, the view's groups of controls and its hint in the status bar, and
// leave mapKind "Normal". The loop over the faces ends early when drawAbort is set, which is 0 at the start
// of every drawing.
//
// Where the window or the camera cannot be computed (a division by zero) nothing is drawn, and the surface
// gets its last finished picture back; the view's controls are shown all the same, which are the way out.
void draw2dview(DrawSurface& surface, bool clearfirst);
void draw3dview(DrawSurface& surface, bool clearfirst);

// The same for a drawing that has its turn already, such as a map. Return whether there was anything that can
// be drawn.
bool drawscene2d(DrawSurface& surface, bool clearfirst);
bool drawscene3d(DrawSurface& surface, bool clearfirst);

// Whether the present view can be drawn at all.
bool viewpossible();

// The three axes of the 3D view, from the origin beyond the room.
void drawaxes3d(DrawSurface& surface);

// Outline of face 1..faceCount shrunk to 0.7 about its centre, always on the main picture: of three vertices
// all, of more the first four. Raises subscript.
void drawshrinkface(std::int32_t face, std::int32_t colour);

// The label of source 1, 2, ...: A to Y, then @Z, AA, AB, ... Never fails.
std::string sourcelabel(std::int32_t source);

// The title line of the picture.
std::string scenetitle();

} // namespace orv
